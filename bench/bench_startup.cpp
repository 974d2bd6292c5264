// Start-up of the tool beside an empty QMainWindow program: the time from starting the process
// to the first shown window, and the peak resident memory of the process. Each is run several
// times as a child process, offscreen, with scratch home folders. Prints figures; asserts nothing.
//
// The tool's child is this same executable started with "--child": it goes through the tool's
// start-up (Application, MainWindow, title, show) and reports once the event loop has shown the
// window, so the tool itself carries no measuring code. It also reports when each step ended, and
// the tool's time is split into loading (exec to main), Application, MainWindow, show and the
// first pass of the event loop.

#include "app/application.h"
#include "ui/mainwindow.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTimer>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr int runs = 9;

// Seconds on the monotonic clock, which parent and child share.
double now()
{
    timespec t{};
    clock_gettime(CLOCK_MONOTONIC, &t);
    return double(t.tv_sec) + double(t.tv_nsec) / 1e9;
}

// entered: when main() began, by now().
int runChild(int argc, char *argv[], double entered)
{
    Application app(argc, argv);
    const double applicationDone = now();
    auto window = std::make_unique<MainWindow>();
    const double windowDone = now();
    window->setWindowTitle(MainWindow::tr("KIRANTO-Link"));
    window->show();
    const double showDone = now();
    QTimer::singleShot(0, &app, [&app, entered, applicationDone, windowDone, showDone] {
        std::printf("steps %.6f %.6f %.6f %.6f %.6f\n",
                    entered,
                    applicationDone,
                    windowDone,
                    showDone,
                    now());
        std::fputs("shown\n", stdout);
        std::fflush(stdout);
        app.quit();
    });
    const int result = app.exec();
    window.reset();
    return result;
}

// Milliseconds of the tool's start-up steps, in order.
constexpr int stepCount = 5;
const char *const stepNames[stepCount] = {
        "loading", "Application", "MainWindow", "show", "first loop"};

struct Sample
{
    double milliseconds = 0;
    std::vector<double> steps;  // stepCount entries when the child reported them
    double cpuMilliseconds = 0; // user and system time of the whole run
    long peakKiB = 0;
    bool ok = false;
};

// Starts program with arguments, waits for its "shown" line and for its end.
Sample runOnce(const std::string &program, const std::vector<std::string> &arguments)
{
    Sample sample;
    int pipeEnds[2];
    if (pipe(pipeEnds) != 0)
        return sample;
    const double start = now();
    const pid_t pid = fork();
    if (pid < 0)
        return sample;
    if (pid == 0) {
        dup2(pipeEnds[1], STDOUT_FILENO);
        close(pipeEnds[0]);
        close(pipeEnds[1]);
        std::vector<char *> argv;
        argv.push_back(const_cast<char *>(program.c_str()));
        for (const std::string &argument : arguments)
            argv.push_back(const_cast<char *>(argument.c_str()));
        argv.push_back(nullptr);
        execv(program.c_str(), argv.data());
        _exit(127);
    }
    close(pipeEnds[1]);
    std::string output;
    char buffer[256];
    for (;;) {
        const ssize_t n = read(pipeEnds[0], buffer, sizeof buffer);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            break;
        output.append(buffer, size_t(n));
        if (output.find("shown\n") != std::string::npos) {
            sample.milliseconds = (now() - start) * 1000.0;
            sample.ok = true;
            break;
        }
    }
    double marks[stepCount] = {};
    const size_t at = output.find("steps ");
    if (at != std::string::npos
        && std::sscanf(output.c_str() + at,
                       "steps %lf %lf %lf %lf %lf",
                       &marks[0],
                       &marks[1],
                       &marks[2],
                       &marks[3],
                       &marks[4])
                   == stepCount) {
        double previous = start;
        for (const double mark : marks) {
            sample.steps.push_back((mark - previous) * 1000.0);
            previous = mark;
        }
    }
    close(pipeEnds[0]);
    int status = 0;
    rusage usage{};
    if (wait4(pid, &status, 0, &usage) < 0 || !WIFEXITED(status) || WEXITSTATUS(status) != 0)
        sample.ok = false;
    sample.peakKiB = usage.ru_maxrss;
    sample.cpuMilliseconds = (double(usage.ru_utime.tv_sec) + double(usage.ru_stime.tv_sec))
                                     * 1000.0
                             + (double(usage.ru_utime.tv_usec) + double(usage.ru_stime.tv_usec))
                                       / 1000.0;
    return sample;
}

template<typename T>
T median(std::vector<T> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

struct Figures
{
    double milliseconds = 0;
    double minimum = 0;
    double maximum = 0;
    double cpuMilliseconds = 0;
    long peakKiB = 0;
};

void print(const char *name, const Figures &figures)
{
    std::printf("%-18s start to shown: median %6.1f ms (min %.1f, max %.1f); CPU of the run "
                "%6.1f ms; peak RSS %5.1f MiB\n",
                name,
                figures.milliseconds,
                figures.minimum,
                figures.maximum,
                figures.cpuMilliseconds,
                double(figures.peakKiB) / 1024.0);
}

} // namespace

int main(int argc, char *argv[])
{
    const double entered = now();
    if (argc > 1 && std::strcmp(argv[1], "--child") == 0)
        return runChild(argc, argv, entered);

    const std::string self = QFileInfo(QString::fromLocal8Bit(argv[0]))
                                     .absoluteFilePath()
                                     .toStdString();
    const std::string folder = QFileInfo(QString::fromStdString(self)).absolutePath().toStdString();
    const std::string bare = folder + "/bare_mainwindow";

    // Children write their folders, logs and configuration into a scratch home.
    QTemporaryDir home;
    if (!home.isValid())
        return 1;
    const QByteArray homePath = home.path().toLocal8Bit();
    setenv("HOME", homePath.constData(), 1);
    setenv("XDG_CONFIG_HOME", (homePath + "/config").constData(), 1);
    setenv("XDG_DATA_HOME", (homePath + "/data").constData(), 1);
    setenv("XDG_CACHE_HOME", (homePath + "/cache").constData(), 1);
    setenv("XDG_RUNTIME_DIR", homePath.constData(), 1);
    setenv("QT_QPA_PLATFORM", "offscreen", 1);

    const std::vector<std::string> offscreen{"-platform", "offscreen"};
    std::vector<std::string> childArguments{"--child"};
    childArguments.insert(childArguments.end(), offscreen.begin(), offscreen.end());

    std::vector<double> toolTimes, bareTimes, toolCpu, bareCpu;
    std::vector<long> toolPeaks, barePeaks;
    std::vector<std::vector<double>> toolSteps(stepCount);
    // One run of each first to warm the file cache, then alternate.
    runOnce(self, childArguments);
    runOnce(bare, offscreen);
    for (int i = 0; i < runs; ++i) {
        const Sample tool = runOnce(self, childArguments);
        const Sample plain = runOnce(bare, offscreen);
        if (!tool.ok || !plain.ok) {
            std::fprintf(stderr,
                         "bench_startup: a child did not report its window (%s)\n",
                         tool.ok ? "bare_mainwindow" : "kiranto-link");
            return 1;
        }
        toolTimes.push_back(tool.milliseconds);
        for (size_t step = 0; step < tool.steps.size(); ++step)
            toolSteps[step].push_back(tool.steps[step]);
        toolCpu.push_back(tool.cpuMilliseconds);
        bareCpu.push_back(plain.cpuMilliseconds);
        toolPeaks.push_back(tool.peakKiB);
        bareTimes.push_back(plain.milliseconds);
        barePeaks.push_back(plain.peakKiB);
    }

    const auto figures = [](const std::vector<double> &times,
                            const std::vector<double> &cpu,
                            const std::vector<long> &peaks) {
        return Figures{median(times),
                       *std::min_element(times.begin(), times.end()),
                       *std::max_element(times.begin(), times.end()),
                       median(cpu),
                       median(peaks)};
    };
    const Figures tool = figures(toolTimes, toolCpu, toolPeaks);
    const Figures plain = figures(bareTimes, bareCpu, barePeaks);
    std::printf("%d runs each, offscreen\n", runs);
    print("kiranto-link", tool);
    print("bare QMainWindow", plain);
    if (!toolSteps[0].empty()) {
        std::printf("kiranto-link steps, median ms:");
        for (int step = 0; step < stepCount; ++step)
            std::printf(" %s %.1f;", stepNames[step], median(toolSteps[step]));
        std::printf("\n");
    }
    std::printf("memory ratio: %.2f; CPU ratio: %.2f\n",
                double(tool.peakKiB) / double(plain.peakKiB),
                tool.cpuMilliseconds / plain.cpuMilliseconds);
    std::printf("startup-ratio: %.2f\n", tool.milliseconds / plain.milliseconds);
    return 0;
}
