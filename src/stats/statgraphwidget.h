#pragma once

#include <QVector>
#include <QWidget>

#include <memory>
#include <utility>

class CustomChannels;
class Locators;
class SafeWrite;
struct SafeWriteResult;
class SpinBoxDelegate;
class StatGraph;
class Uki;

namespace Ui {
class StatGraphWidget;
}

// The fault-search statistics page: every channel of the monitor and its locators with its
// custom settings, the channels ticked for the graph, and the raw values of one channel.
// Reads go through the engine and channel writes through the guarded writer given to the
// constructor, which must outlive the page; the page starts them itself and never while the
// engine runs a program it did not start.
class StatGraphWidget : public QWidget
{
    Q_OBJECT
public:
    StatGraphWidget(Uki *uki, SafeWrite *writer, QWidget *parent = nullptr);
    ~StatGraphWidget() override;

    StatGraph *graph() const { return m_graph; }

    // Rebuilds the channel table from these models (the engine's after a device read, or
    // loaded from files); customChannels may be empty, every channel then reads "OFF".
    void showChannels(const std::shared_ptr<Locators> &locators,
                      const std::shared_ptr<CustomChannels> &customChannels);

signals:
    // Told once the page has started a statistics read (level 1) of the channel (0-based).
    // The engine is busy then: a request made in answer would be refused and end this run.
    void requestStatistics(uint address, uint channel);
    // Emitted and handled by the page: refresh buttons follow enabled, save buttons also need
    // unsaved settings. The page emits false and true itself around every engine run.
    void setButtonsEnabled(bool enabled);
    // Told once the page has started writing a channel (0-based); bounds in units (0..75).
    void setChannelBounds(uint address, uint channel, uint lower, uint upper);
    // The file buttons; the files are the caller's business.
    void loadChannelsFromFile();
    void saveChannelsToFile();

public slots:
    // Rebuilds the table from the engine's locators and custom channels.
    void updateChannels();
    // After a statistics read: refills the dump of the current channel and repaints the graph.
    void updateStatistics(bool success);

private slots:
    void treeCellChanged(int row, int column);

private:
    using Key = std::pair<uint, uint>; // (address, channel 0..15)

    // One request of the page to the engine; those made while the page's own previous request
    // runs wait for it.
    struct Job
    {
        enum Type { Read, Write } type = Read;
        Key key;
        bool operator==(const Job &other) const { return type == other.type && key == other.key; }
    };

    void fillRow(int row, const Key &key, const QString &device);
    void setSettingsCells(int row, const Key &key);
    void channelToggled(const Key &key, QWidget *cell, bool checked);
    void submit(const Job &job);
    bool start(const Job &job);
    void finishJob();
    void startNext();
    void channelWritten(const SafeWriteResult &result);
    void buttonsEnabled(bool enabled);
    void fillDump();
    Key currentKey() const;
    QWidget *cellButton(int row, const char *name) const;

    Ui::StatGraphWidget *ui = nullptr;
    Uki *m_uki = nullptr;
    SafeWrite *m_writer = nullptr;
    StatGraph *m_graph = nullptr;
    SpinBoxDelegate *m_rLocDelegate = nullptr;
    SpinBoxDelegate *m_lowerDelegate = nullptr;
    SpinBoxDelegate *m_upperDelegate = nullptr;
    QVector<Key> m_rows;          // the channel of each table row
    QVector<Job> m_queue;         // waiting for the running job
    bool m_running = false;       // the engine runs a job of this page
    Job m_current;                // the running job
    bool m_engineRunning = false; // between the engine's programStart and programDone
    bool m_tableFitted = false;   // the splitter has given the table its width once
};
