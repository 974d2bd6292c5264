<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="ru">
<context>
    <name>AboutDialog</name>
    <message>
        <location filename="../../ui/aboutdialog.ui" line="+14"/>
        <source>О программе</source>
        <translation>About</translation>
    </message>
    <message>
        <location line="+49"/>
        <source>&lt;p&gt;&lt;span style=&quot; font-size:12pt; font-weight:600;&quot;&gt;%%APPNAME%%&lt;/span&gt; (%%VERSION%%)&lt;/p&gt;
&lt;p&gt;%%APPDESCRIPTION%%&lt;/p&gt;
&lt;p&gt;© 2026 Marvolet. Все права защищены.&lt;/p&gt;
&lt;p&gt;&lt;a href=&quot;mailto:service@marvolet.example&quot;&gt;service@marvolet.example&lt;/a&gt;&lt;/p&gt;</source>
        <translation>&lt;p&gt;&lt;span style=&quot; font-size:12pt; font-weight:600;&quot;&gt;%%APPNAME%%&lt;/span&gt; (%%VERSION%%)&lt;/p&gt;
&lt;p&gt;%%APPDESCRIPTION%%&lt;/p&gt;
&lt;p&gt;© 2026 Marvolet. All rights reserved.&lt;/p&gt;
&lt;p&gt;&lt;a href=&quot;mailto:service@marvolet.example&quot;&gt;service@marvolet.example&lt;/a&gt;&lt;/p&gt;</translation>
    </message>
    <message>
        <location filename="../../ui/aboutdialog.cpp" line="+14"/>
        <source>версия %1</source>
        <translation>version %1</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>КИРАНТО-линк</source>
        <translation>KIRANTO-Link</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Сервисная программа для устройств КИРАНТО</source>
        <translation>Service tool for KIRANTO devices</translation>
    </message>
</context>
<context>
    <name>ArchiveData</name>
    <message>
        <location filename="../../models/archivedata.cpp" line="+183"/>
        <source>#</source>
        <translation>#</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Дата/время</source>
        <translation>Date/time</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Тип события</source>
        <translation>Event type</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Данные</source>
        <translation>Data</translation>
    </message>
    <message>
        <location line="+14"/>
        <source>Запись с замерами сопротивления (периодическая)</source>
        <translation>Resistance measurement record (periodic)</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Дублирование адресов локаторов</source>
        <translation>Duplicate locator addresses</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Неисправность ТТ</source>
        <translation>CT fault</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Неисправность ТТ в локаторе</source>
        <translation>CT fault in locator</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Потеря связи с локатором</source>
        <translation>Locator communication lost</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Потеря связи с УКИ</source>
        <translation>IMD communication lost</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Дублирование адресов УКИ</source>
        <translation>Duplicate IMD addresses</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Адрес УКИ вне допуска</source>
        <translation>IMD address out of range</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Адрес локатора вне допуска</source>
        <translation>Locator address out of range</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Ёмкость сети</source>
        <translation>Network capacitance</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Результаты поиска</source>
        <translation>Fault search results</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Неверная конфигурация (слишком много включённых локаторов)</source>
        <translation>Invalid configuration (too many locators enabled)</translation>
    </message>
    <message>
        <location line="+5"/>
        <location line="+3"/>
        <location line="+37"/>
        <source>Выключение питания</source>
        <translation>Power off</translation>
    </message>
    <message>
        <location line="-34"/>
        <source>Адрес анешнего локатора такой же как у УКИ</source>
        <translation>External locator has the same address as the IMD</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Снижение R ниже R1</source>
        <translation>R dropped below R1</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Снижение R ниже R2</source>
        <translation>R dropped below R2</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Перекос напряжения</source>
        <translation>Voltage imbalance</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Обрыв Т-моста</source>
        <translation>T-bridge open circuit</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Неисправность устройства</source>
        <translation>Device fault</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Обрыв АБ</source>
        <translation>Battery circuit break</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Разряд АБ</source>
        <translation>Battery discharge</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Превышение напряжения АБ</source>
        <translation>Battery overvoltage</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Снижение напряжения АБ</source>
        <translation>Battery undervoltage</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Превышен уровень пульсаций напряжения</source>
        <translation>Voltage ripple too high</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Превышен уровень пульсаций тока</source>
        <translation>Current ripple too high</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Включение питания и версия ПО</source>
        <translation>Power on and firmware version</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Нарушение симметрии АБ</source>
        <translation>Battery asymmetry</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Повышение температуры</source>
        <translation>Temperature high</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Снижение температуры</source>
        <translation>Temperature low</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Повышение напряжения &quot;хвоста&quot;</source>
        <translation>&quot;Tail&quot; voltage high</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Снижение напряжения &quot;хвоста&quot;</source>
        <translation>&quot;Tail&quot; voltage low</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>пропало: Нарушение симметрии АБ</source>
        <translation>cleared: Battery asymmetry</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>пропало: Повышение температуры</source>
        <translation>cleared: Temperature high</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>пропало: Снижение температуры</source>
        <translation>cleared: Temperature low</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>пропало: Повышение напряжения &quot;хвоста&quot;</source>
        <translation>cleared: &quot;Tail&quot; voltage high</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>пропало: Снижение напряжения &quot;хвоста&quot;</source>
        <translation>cleared: &quot;Tail&quot; voltage low</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>пропало: Неисправность устройства</source>
        <translation>cleared: Device fault</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>пропало: Обрыв АБ</source>
        <translation>cleared: Battery circuit break</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>пропало: Разряд АБ</source>
        <translation>cleared: Battery discharge</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>пропало: Превышение напряжения АБ</source>
        <translation>cleared: Battery overvoltage</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>пропало: Снижение напряжения АБ</source>
        <translation>cleared: Battery undervoltage</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>пропало: Превышен уровень пульсаций напряжения</source>
        <translation>cleared: Voltage ripple too high</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>пропало: Превышен уровень пульсаций тока</source>
        <translation>cleared: Current ripple too high</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Превышено напряжение на отрицательном полюсе</source>
        <translation>Negative pole voltage too high</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>У другого УКИ включена опция МультиУКИ, а у нас нет</source>
        <translation>Another IMD has Multi-IMD enabled, this one does not</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>ET_DEBUG</source>
        <translation>ET_DEBUG</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>ET_FEED_COMPLEX</source>
        <translation>ET_FEED_COMPLEX</translation>
    </message>
    <message>
        <location line="+16"/>
        <location line="+75"/>
        <source>-</source>
        <translation>-</translation>
    </message>
    <message>
        <location line="-64"/>
        <source>Rобщ = %1кОм, R+/- = %2/%3кОм; Uаб = %4В, U+/- = %5/%6В</source>
        <translation>Rtot = %1 kΩ, R+/- = %2/%3 kΩ; Ubat = %4 V, U+/- = %5/%6 V</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Rобщ = %1кОм, R+/- = %2/%3кОм; U+/- = %4/%5В</source>
        <translation>Rtot = %1 kΩ, R+/- = %2/%3 kΩ; U+/- = %4/%5 V</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Адрес: %1</source>
        <translation>Address: %1</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Адрес: УКИ, ТТ: %1</source>
        <translation>Address: IMD, CT: %1</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>Адрес: %1, ТТ: %2</source>
        <translation>Address: %1, CT: %2</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>С = %1мкФ, I = %2мкА</source>
        <translation>C = %1 µF, I = %2 µA</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Адрес: %1, канал: %2: Rизо = %3кОм, C = %4мкФ I = %5мкА</source>
        <translation>Address: %1, channel: %2: Riso = %3 kΩ, C = %4 µF, I = %5 µA</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>I = %1 мА</source>
        <translation>I = %1 mA</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>U АБ = %1 в</source>
        <translation>Ubat = %1 V</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Пульс. U = %1%</source>
        <translation>Ripple U = %1%</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Пульс. I = %1%</source>
        <translation>Ripple I = %1%</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Версия прошивки: %1.%2.%3</source>
        <translation>Firmware version: %1.%2.%3</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Асимметрия = %1 в</source>
        <translation>Asymmetry = %1 V</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>T = %1°</source>
        <translation>T = %1°</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Uх.э. = %1 в</source>
        <translation>Utail = %1 V</translation>
    </message>
</context>
<context>
    <name>ArchiveFilterProxy</name>
    <message>
        <location filename="../../models/archivefilterproxy.cpp" line="+17"/>
        <source>Ёмкость</source>
        <translation>Capacitance</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Аварии КИ</source>
        <translation>Insulation alarms</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Аварии АБ</source>
        <translation>Battery alarms</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Диагн. события</source>
        <translation>Diagnostic events</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Авария темп.</source>
        <translation>Temperature alarm</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Поиск</source>
        <translation>Fault search</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Контроль</source>
        <translation>Monitoring</translation>
    </message>
    <message>
        <location line="+39"/>
        <source>Всё</source>
        <translation>All</translation>
    </message>
</context>
<context>
    <name>Cli</name>
    <message>
        <location filename="../../cli/main.cpp" line="+1"/>
        <source>устройство занято</source>
        <translation>device busy</translation>
    </message>
    <message>
        <location filename="../../cli/main.cpp" line="+93"/>
        <source>устройство на %1: %2</source>
        <translation>device on %1: %2</translation>
    </message>
    <message>
        <location line="+42"/>
        <source>Устройство: %1 (%2)</source>
        <translation>Device: %1 (%2)</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Версия ПО: %1</source>
        <translation>Firmware version: %1</translation>
    </message>
    <message>
        <location line="+40"/>
        <source>не удалось создать папку %1</source>
        <translation>could not create folder %1</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>ошибка записи в файл %1: %2</source>
        <translation>error writing file %1: %2</translation>
    </message>
    <message>
        <location line="+30"/>
        <source>не удалось прочитать файл %1: %2</source>
        <translation>could not read file %1: %2</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>файл %1 для устройства %2, а подключено %3</source>
        <translation>file %1 is for a %2, but a %3 is connected</translation>
    </message>
    <message>
        <location line="+55"/>
        <source>%1 - файл коррекций, а не настроек</source>
        <translation>%1 is a corrections file, not a settings file</translation>
    </message>
    <message>
        <location line="+13"/>
        <source>Резервная копия: %1</source>
        <translation>Backup: %1</translation>
    </message>
    <message>
        <location line="+9"/>
        <source>kiranto-cli: устройство не приняло: %1</source>
        <translation>kiranto-cli: not taken by the device: %1</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Записано и проверено: %1 из %1</source>
        <translation>Written and verified: %1 of %1</translation>
    </message>
    <message>
        <location line="+49"/>
        <source>Чтение и запись устройств КИРАНТО через последовательный порт.

Команды:
  identify                 вариант, версия ПО, локаторы с масками и состоянием ТТ
  read --out DIR           файлы страниц в DIR (--what settings,archive,
                           corrections,channels,all; по умолчанию all)
  backup --out DIR         всё в датированную папку внутри DIR
  compare FILE             устройство против файла настроек или коррекций,
                           по строке на различие: ключ, устройство, файл
  write-settings FILE      резервная копия (--backup DIR), запись, проверка
  stats ADDRESS CHANNEL    точки статистики поиска (--level L, по умолчанию 1)

Коды завершения: 0 - успех, 1 - есть различия, 2 - ошибка в командной строке,
3 - ошибка устройства, 4 - ошибка файла.</source>
        <translation>Reads and writes KIRANTO devices over a serial port.

Commands:
  identify                 variant, firmware version, locators with masks and CT states
  read --out DIR           page files into DIR (--what settings,archive,
                           corrections,channels,all; default all)
  backup --out DIR         everything into a dated folder inside DIR
  compare FILE             the device against a settings or corrections file,
                           one line per difference: key, device, file
  write-settings FILE      backup (--backup DIR), write, read back and check
  stats ADDRESS CHANNEL    fault-search statistics points (--level L, default 1)

Exit status: 0 ok, 1 differences, 2 usage error,
3 device error, 4 file error.</translation>
    </message>
    <message>
        <location line="+17"/>
        <source>Последовательный порт (обязательно).</source>
        <translation>Serial port (required).</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Вариант устройства: ukps-ks, ukps-ab, ukps-ks-2, uki-kiranto (по умолчанию по версии ПО).</source>
        <translation>Device variant: ukps-ks, ukps-ab, ukps-ks-2, uki-kiranto (default: from the firmware version).</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Вывод в JSON.</source>
        <translation>Output as JSON.</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Папка для файлов.</source>
        <translation>Folder for the files.</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Что читать.</source>
        <translation>What to read.</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Папка резервных копий.</source>
        <translation>Folder for backups.</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Показать команды записи, не отправляя их.</source>
        <translation>Print the write commands instead of sending them.</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Уровень статистики.</source>
        <translation>Statistics level.</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>Команда и её аргументы.</source>
        <translation>The command and its arguments.</translation>
    </message>
    <message>
        <location line="+21"/>
        <source>неизвестная команда &quot;%1&quot; (см. --help)</source>
        <translation>unknown command &quot;%1&quot; (see --help)</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>неверное число аргументов команды %1</source>
        <translation>wrong number of arguments for command %1</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>не задан порт (--port)</source>
        <translation>no port given (--port)</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>неизвестный вариант &quot;%1&quot;</source>
        <translation>unknown variant &quot;%1&quot;</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>не задана папка (--out)</source>
        <translation>no folder given (--out)</translation>
    </message>
    <message>
        <location line="+9"/>
        <source>неизвестное значение --what: &quot;%1&quot;</source>
        <translation>unknown value of --what: &quot;%1&quot;</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>нет файла %1</source>
        <translation>no such file: %1</translation>
    </message>
    <message>
        <location line="+9"/>
        <source>адрес, канал и уровень - целые числа</source>
        <translation>address, channel and level must be whole numbers</translation>
    </message>
</context>
<context>
    <name>CompareDialog</name>
    <message>
        <source>Сравнение с файлом</source>
        <translation>Compare with file</translation>
    </message>
    <message>
        <source>Поставить значения из файла в редактор; в устройство ничего не записывается</source>
        <translation>Put the file's values into the editor; nothing is written to the device</translation>
    </message>
    <message>
        <source>Взять значения из файла</source>
        <translation>Take values from file</translation>
    </message>
    <message>
        <source>Файл: %1</source>
        <translation>File: %1</translation>
    </message>
</context>
<context>
    <name>ConfigDialog</name>
    <message>
        <location filename="../../ui/configdialog.ui" line="+14"/>
        <source>Настройки</source>
        <translation>Settings</translation>
    </message>
    <message>
        <location line="+10"/>
        <source>Подключение</source>
        <translation>Connection</translation>
    </message>
    <message>
        <location line="+12"/>
        <source>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;Последовательный порт, к которому подключён датчик.&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</source>
        <translation>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;Serial port the device is connected to.&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Порт</source>
        <translation>Port</translation>
    </message>
    <message>
        <location line="+35"/>
        <source>Выбор устройства (для автономного режима)</source>
        <translation>Device (for offline mode)</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>УКПС КИРАНТО-КС</source>
        <translation>UKPS KIRANTO-KS</translation>
    </message>
    <message>
        <location line="+7"/>
        <source>УКПС КИРАНТО-КС-2</source>
        <translation>UKPS KIRANTO-KS-2</translation>
    </message>
    <message>
        <location line="+7"/>
        <source>УКБ КИРАНТО-АБ</source>
        <translation>UKB KIRANTO-AB</translation>
    </message>
    <message>
        <location line="+7"/>
        <source>УКИ КИРАНТО</source>
        <translation>KIRANTO IMD</translation>
    </message>
    <message>
        <location line="+24"/>
        <source>Прочее</source>
        <translation>Other</translation>
    </message>
    <message>
        <location filename="../../ui/configdialog.cpp" line="+12"/>
        <source> (отсутствует в системе)</source>
        <translation> (not present)</translation>
    </message>
</context>
<context>
    <name>CsvFiles</name>
    <message>
        <location filename="../../files/csvfiles.cpp" line="+208"/>
        <source>[[ERR]]Не удалось сохранить данные: не найдена папка для сохранения.</source>
        <translation>[[ERR]]Could not save the data: the folder to save to was not found.</translation>
    </message>
    <message>
        <location line="+12"/>
        <source>Настройки УКПС</source>
        <translation>UKPS settings</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>Архив</source>
        <translation>Event archive</translation>
    </message>
    <message>
        <location line="+11"/>
        <source>[[ERR]]Не удалось сохранить %1: ошибка записи в файл %2.</source>
        <translation>[[ERR]]Could not save %1: error writing file %2.</translation>
    </message>
    <message>
        <location line="+8"/>
        <source>[[WARN]]Нечего сохранять!</source>
        <translation>[[WARN]]Nothing to save!</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>[[OK]]Успешно сохранены:
 *%1</source>
        <translation>[[OK]]Saved:
 *%1</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>[[ERR]]Ошибка записи в файл %1.</source>
        <translation>[[ERR]]Error writing file %1.</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>[[OK]]Файл записан</source>
        <translation>[[OK]]File written</translation>
    </message>
    <message>
        <location line="+47"/>
        <source>[[OK]]Файл прочитан</source>
        <translation>[[OK]]File read</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>[[ERR]]Ошибка чтения файла %1.</source>
        <translation>[[ERR]]Error reading file %1.</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>[[ERR]]Сначала необходимо открыть файл конфигурации ИМС (...uki-config.csv)</source>
        <translation>[[ERR]]Open the IMS configuration file (...uki-config.csv) first</translation>
    </message>
</context>
<context>
    <name>CtCorrections</name>
    <message>
        <location filename="../../models/ctcorrections.cpp" line="+124"/>
        <source>Адрес</source>
        <translation>Address</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Канал</source>
        <translation>Channel</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Коэфф. усиления</source>
        <translation>Gain</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Сдвиг фазы</source>
        <translation>Phase shift</translation>
    </message>
</context>
<context>
    <name>CustomChannels</name>
    <message>
        <location filename="../../models/customchannels.cpp" line="+97"/>
        <source>Адрес</source>
        <translation>Address</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Канал</source>
        <translation>Channel</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>RLoc</source>
        <translation>RLoc</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Нижний порог</source>
        <translation>Lower threshold</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Верхний порог</source>
        <translation>Upper threshold</translation>
    </message>
</context>
<context>
    <name>DeviceSession</name>
    <message>
        <location filename="../../cli/devicesession.cpp" line="+53"/>
        <source>Устройство занято</source>
        <translation>The device is busy</translation>
    </message>
    <message>
        <location line="+7"/>
        <source>Устройство не ответило как ожидалось</source>
        <translation>The device did not answer as expected</translation>
    </message>
</context>
<context>
    <name>DeviceVariant</name>
    <message>
        <location filename="../../app/programsettings.cpp" line="+9"/>
        <source>УКПС КИРАНТО-КС</source>
        <translation>UKPS KIRANTO-KS</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>УКБ КИРАНТО-АБ</source>
        <translation>UKB KIRANTO-AB</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>УКПС КИРАНТО-КС-2</source>
        <translation>UKPS KIRANTO-KS-2</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>УКИ КИРАНТО</source>
        <translation>KIRANTO IMD</translation>
    </message>
    <message>
        <location line="+16"/>
        <source>Неизвестное устройство</source>
        <translation>Unknown device</translation>
    </message>
</context>
<context>
    <name>DfuFile</name>
    <message>
        <location filename="../../firmware/dfufile.cpp" line="+206"/>
        <source>В файле %1 целей, допускается не более %2.</source>
        <translation>The file has %1 targets; at most %2 are allowed.</translation>
    </message>
    <message>
        <location line="+8"/>
        <source>Альтернативная настройка цели «%1» вне диапазона 0..255: %2.</source>
        <translation>Alternate setting of target &quot;%1&quot; is outside 0..255: %2.</translation>
    </message>
    <message>
        <location line="+8"/>
        <source>Имя цели «%1» занимает %2 байт, допускается не более %3.</source>
        <translation>Name of target &quot;%1&quot; takes %2 bytes; at most %3 are allowed.</translation>
    </message>
    <message>
        <location line="+7"/>
        <source>Имя цели «%1» содержит нулевой символ.</source>
        <translation>Name of target &quot;%1&quot; contains a NUL character.</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Блок цели «%1» по адресу 0x%2 (%3 байт) выходит за 4 ГиБ адресного пространства.</source>
        <translation>Element of target &quot;%1&quot; at address 0x%2 (%3 bytes) runs past the 4 GiB address space.</translation>
    </message>
    <message>
        <location line="+8"/>
        <source>Размер цели «%1» превышает 4 ГиБ.</source>
        <translation>Size of target &quot;%1&quot; exceeds 4 GiB.</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Размер файла превышает 4 ГиБ.</source>
        <translation>File size exceeds 4 GiB.</translation>
    </message>
    <message>
        <location line="+12"/>
        <source>Файл в %1 байт слишком велик для сборки в памяти.</source>
        <translation>A file of %1 bytes is too large to build in memory.</translation>
    </message>
    <message>
        <location line="+21"/>
        <location line="+22"/>
        <source>Не удалось записать файл %1: %2.</source>
        <translation>Could not write file %1: %2.</translation>
    </message>
    <message>
        <location line="+9"/>
        <source>Файл DFU повреждён: %1.</source>
        <translation>DFU file is damaged: %1.</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>файл короче %1 байт</source>
        <translation>file is shorter than %1 bytes</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>нет суффикса DFU</source>
        <translation>no DFU suffix</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>версия DFU 0x%1 вместо 0x011A</source>
        <translation>DFU version 0x%1 instead of 0x011A</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>контрольная сумма 0x%1 в файле, вычислена 0x%2</source>
        <translation>checksum 0x%1 in the file, 0x%2 computed</translation>
    </message>
    <message>
        <location line="+7"/>
        <source>нет подписи DfuSe</source>
        <translation>no DfuSe signature</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>версия формата %1 вместо 1</source>
        <translation>format version %1 instead of 1</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>размер образа %1 не равен размеру файла без суффикса %2</source>
        <translation>image size %1 differs from the file size without suffix %2</translation>
    </message>
    <message>
        <location line="+9"/>
        <source>цель %1 обрывается на заголовке</source>
        <translation>target %1 is cut off in its header</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>у цели %1 нет подписи Target</source>
        <translation>target %1 has no Target signature</translation>
    </message>
    <message>
        <location line="+10"/>
        <source>цель %1 размером %2 байт выходит за конец файла</source>
        <translation>target %1 of %2 bytes runs past the end of the file</translation>
    </message>
    <message>
        <location line="+5"/>
        <location line="+4"/>
        <source>блок %1 цели %2 выходит за её размер</source>
        <translation>element %1 of target %2 runs past the target size</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>размер цели %1 (%2 байт) не равен сумме её блоков (%3 байт)</source>
        <translation>size of target %1 (%2 bytes) differs from the sum of its elements (%3 bytes)</translation>
    </message>
    <message>
        <location line="+7"/>
        <source>после целей %1 лишних байт</source>
        <translation>%1 extra bytes after the targets</translation>
    </message>
    <message>
        <location line="+10"/>
        <source>Не удалось прочитать файл %1: %2.</source>
        <translation>Could not read file %1: %2.</translation>
    </message>
</context>
<context>
    <name>DfuSelfTest</name>
    <message>
        <location filename="../../firmware/dfuselftest.cpp" line="+39"/>
        <source>Самопроверка файла DFU не пройдена: %1</source>
        <translation>DFU file self-test failed: %1</translation>
    </message>
    <message>
        <location line="+11"/>
        <source>не удалось прочитать файл %1: %2.</source>
        <translation>could not read file %1: %2.</translation>
    </message>
    <message>
        <location line="+7"/>
        <source>в файле %1 байт вместо %2.</source>
        <translation>the file has %1 bytes instead of %2.</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>неверный префикс файла.</source>
        <translation>wrong file prefix.</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>неверная контрольная сумма.</source>
        <translation>wrong checksum.</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>прочитанное содержимое отличается от записанного.</source>
        <translation>the content read back differs from what was written.</translation>
    </message>
</context>
<context>
    <name>Locators</name>
    <message>
        <location filename="../../models/bitstring.cpp" line="+37"/>
        <source>X</source>
        <translation>X</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>И</source>
        <translation>T</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>и</source>
        <translation>t</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>З</source>
        <translation>S</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>О</source>
        <translation>O</translation>
    </message>
    <message>
        <location filename="../../models/locators.cpp" line="+76"/>
        <source>УКИ</source>
        <translation>IMD</translation>
    </message>
    <message>
        <location line="+20"/>
        <source>Адрес</source>
        <translation>Address</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Версия ПО</source>
        <translation>Firmware version</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Маска каналов</source>
        <translation>Channel mask</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Маска тестирования</source>
        <translation>Test mask</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Состояние ТТ</source>
        <translation>CT state</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <location filename="../../ui/mainwindow.cpp" line="+1"/>
        <source>[[WARN]]Коррекции не изменены: записывать нечего</source>
        <translation>[[WARN]]No correction changed: nothing to write</translation>
    </message>
    <message>
        <location filename="../../ui/mainwindow.ui" line="+40"/>
        <source>Настройки</source>
        <translation>Settings</translation>
    </message>
    <message>
        <location line="+35"/>
        <location line="+363"/>
        <location line="+283"/>
        <source>Вид:</source>
        <translation>View:</translation>
    </message>
    <message>
        <location line="-639"/>
        <source>В виде формы для редактирования</source>
        <translation>As a form for editing</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Редактор</source>
        <translation>Form</translation>
    </message>
    <message>
        <location line="+31"/>
        <source>В текстовом виде</source>
        <translation>As text</translation>
    </message>
    <message>
        <location line="+3"/>
        <location line="+363"/>
        <location line="+283"/>
        <source>Дамп</source>
        <translation>Dump</translation>
    </message>
    <message>
        <location line="-608"/>
        <source>Прочитать настройки</source>
        <translation>Read settings</translation>
    </message>
    <message>
        <location line="+3"/>
        <location line="+363"/>
        <location line="+283"/>
        <source>Прочитать</source>
        <translation>Read</translation>
    </message>
    <message>
        <location line="-624"/>
        <source>Записать настройки</source>
        <translation>Write settings</translation>
    </message>
    <message>
        <location line="+3"/>
        <location line="+646"/>
        <source>Записать</source>
        <translation>Write</translation>
    </message>
    <message>
        <location line="-614"/>
        <source>Прочитать настройки из файла...</source>
        <translation>Load settings from file...</translation>
    </message>
    <message>
        <location line="+3"/>
        <location line="+338"/>
        <location line="+308"/>
        <source>Открыть...</source>
        <translation>Open...</translation>
    </message>
    <message>
        <location line="-624"/>
        <source>Сохранить настройки в файл...</source>
        <translation>Save settings to file...</translation>
    </message>
    <message>
        <location line="+3"/>
        <location line="+338"/>
        <location line="+308"/>
        <source>Сохранить...</source>
        <translation>Save...</translation>
    </message>
    <message>
        <location line="-505"/>
        <source>Архив</source>
        <translation>Event archive</translation>
    </message>
    <message>
        <location line="+35"/>
        <source>Фильтр:</source>
        <translation>Filter:</translation>
    </message>
    <message>
        <location line="+24"/>
        <location line="+283"/>
        <source>В виде таблицы</source>
        <translation>As a table</translation>
    </message>
    <message>
        <location line="-280"/>
        <location line="+283"/>
        <source>Таблица</source>
        <translation>Table</translation>
    </message>
    <message>
        <location line="-252"/>
        <location line="+283"/>
        <source>В исходном виде</source>
        <translation>As raw text</translation>
    </message>
    <message>
        <location line="-242"/>
        <source>Прочитать архив</source>
        <translation>Read event archive</translation>
    </message>
    <message>
        <location line="+35"/>
        <source>Загрузить архив из файла...</source>
        <translation>Load event archive from file...</translation>
    </message>
    <message>
        <location line="+25"/>
        <source>Сохранить архив в файл...</source>
        <translation>Save event archive to file...</translation>
    </message>
    <message>
        <location line="+106"/>
        <location filename="../../ui/mainwindow.cpp" line="+485"/>
        <source>Коррекция ТТ</source>
        <translation>CT correction</translation>
    </message>
    <message>
        <location line="+117"/>
        <source>Прочитать коррекции ТТ</source>
        <translation>Read CT corrections</translation>
    </message>
    <message>
        <location line="+25"/>
        <source>Записать коррекции ТТ в УКИ</source>
        <translation>Write CT corrections to the IMD</translation>
    </message>
    <message>
        <location line="+35"/>
        <source>Загрузить коррекции ТТ из файла...</source>
        <translation>Load CT corrections from file...</translation>
    </message>
    <message>
        <location line="+25"/>
        <source>Сохранить коррекции ТТ в файл...</source>
        <translation>Save CT corrections to file...</translation>
    </message>
    <message>
        <location line="+106"/>
        <location filename="../../ui/mainwindow.cpp" line="+2"/>
        <source>Настройка ИК</source>
        <translation>Channel setup</translation>
    </message>
    <message>
        <location line="+36"/>
        <source>Конфигурация ИМС</source>
        <translation>IMS configuration</translation>
    </message>
    <message>
        <location line="+51"/>
        <source>Файл</source>
        <translation>File</translation>
    </message>
    <message>
        <location line="+9"/>
        <source>Справка</source>
        <translation>Help</translation>
    </message>
    <message>
        <location line="+9"/>
        <source>Подключение</source>
        <translation>Connection</translation>
    </message>
    <message>
        <location line="+22"/>
        <source>Выбор порта для подлючения</source>
        <translation>Choose the port to connect to</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Подключить</source>
        <translation>Connect</translation>
    </message>
    <message>
        <location line="+20"/>
        <location line="+155"/>
        <source>О программе</source>
        <translation>About</translation>
    </message>
    <message>
        <location line="-135"/>
        <source>Прервать операцию с устройством (Esc)</source>
        <translation>Stop the operation with the device (Esc)</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Стоп</source>
        <translation>Stop</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Esc</source>
        <translation>Esc</translation>
    </message>
    <message>
        <location line="+28"/>
        <source>Данные</source>
        <translation>Data</translation>
    </message>
    <message>
        <location line="+22"/>
        <source>Прочитать настройки и архив из УКПС (F5)</source>
        <translation>Read settings and event archive from the UKPS (F5)</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Прочитать всё. (F5)</source>
        <translation>Read all (F5)</translation>
    </message>
    <message>
        <location line="+12"/>
        <source>F5</source>
        <translation>F5</translation>
    </message>
    <message>
        <location line="+11"/>
        <source>Сохранить настройки и архив в файлы csv...</source>
        <translation>Save settings and event archive to CSV files...</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Сохранить всё (F2)</source>
        <translation>Save all (F2)</translation>
    </message>
    <message>
        <location line="+12"/>
        <source>F2</source>
        <translation>F2</translation>
    </message>
    <message>
        <location line="+11"/>
        <source>Настройки программы</source>
        <translation>Program settings</translation>
    </message>
    <message>
        <location line="+19"/>
        <source>Выход</source>
        <translation>Exit</translation>
    </message>
    <message>
        <location line="+16"/>
        <source>Настройки...</source>
        <translation>Settings...</translation>
    </message>
    <message>
        <location line="+10"/>
        <source>Загрузить конфигурацию...</source>
        <translation>Load configuration...</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Задать серийный номер датчика...</source>
        <translation>Set sensor serial number...</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Задать глубину...</source>
        <translation>Set depth...</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Во весь экран</source>
        <translation>Full screen</translation>
    </message>
    <message>
        <location filename="../../app/main.cpp" line="+11"/>
        <source>KIRANTO-Link</source>
        <translation>KIRANTO-Link</translation>
    </message>
    <message>
        <location filename="../../ui/mainwindow.cpp" line="-357"/>
        <source>Принято строк: %1, %2 КБ, %3 КБ/с</source>
        <translation>Lines received: %1, %2 KB, %3 KB/s</translation>
    </message>
    <message>
        <location line="+28"/>
        <source>Команд выполнено: %v из %m</source>
        <translation>Commands done: %v of %m</translation>
    </message>
    <message>
        <location line="+177"/>
        <source>[[INFO]]Подключаемся...</source>
        <translation>[[INFO]]Connecting...</translation>
    </message>
    <message>
        <location line="+9"/>
        <source>[[INFO]]Читаем данные...</source>
        <translation>[[INFO]]Reading data...</translation>
    </message>
    <message>
        <location line="+14"/>
        <source>[[INFO]]Читаем конфигурацию УКИ...</source>
        <translation>[[INFO]]Reading IMD configuration...</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>[[INFO]]Читаем конфигурацию УКПС...</source>
        <translation>[[INFO]]Reading UKPS configuration...</translation>
    </message>
    <message>
        <location line="+8"/>
        <source>[[INFO]]Читаем архив...</source>
        <translation>[[INFO]]Reading event archive...</translation>
    </message>
    <message>
        <location line="+7"/>
        <source>[[INFO]]Читаем коррекции ТТ...</source>
        <translation>[[INFO]]Reading CT corrections...</translation>
    </message>
    <message>
        <location line="+31"/>
        <source>[[WARN]]Операция прервана</source>
        <translation>[[WARN]]Operation stopped</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>[[ERR]]Порт %1 отключён</source>
        <translation>[[ERR]]Port %1 disconnected</translation>
    </message>
    <message>
        <location line="+11"/>
        <source>[[ERR]]Устройство не подключено: Автономная работа</source>
        <translation>[[ERR]]Device not connected: working offline</translation>
    </message>
    <message>
        <location line="+45"/>
        <source>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p align=&quot;center&quot;&gt;&lt;span style=&quot;font-weight:600;&quot;&gt;%1&lt;/span&gt;&lt;br&gt;Версия ПО - &lt;span style=&quot;font-weight:600;&quot;&gt;%2&lt;/span&gt;&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</source>
        <translation>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p align=&quot;center&quot;&gt;&lt;span style=&quot;font-weight:600;&quot;&gt;%1&lt;/span&gt;&lt;br&gt;Firmware version - &lt;span style=&quot;font-weight:600;&quot;&gt;%2&lt;/span&gt;&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</translation>
    </message>
    <message>
        <location line="+15"/>
        <source>[[OK]]Подключено устройство: %1</source>
        <translation>[[OK]]Device connected: %1</translation>
    </message>
    <message>
        <location line="+40"/>
        <source>Данные из %1</source>
        <translation>Data from %1</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>[[OK]]Конфигурация успешно загружена</source>
        <translation>[[OK]]Configuration loaded</translation>
    </message>
    <message>
        <location line="+11"/>
        <source>[[OK]]Статистика прочитана!</source>
        <translation>[[OK]]Statistics read!</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>[[ERR]]Не удалось прочитать статистику поиска</source>
        <translation>[[ERR]]Could not read the fault search statistics</translation>
    </message>
    <message>
        <location filename="../../ui/mainwindow_files.cpp" line="+57"/>
        <source>Файлы csv (*.csv)</source>
        <translation>CSV files (*.csv)</translation>
    </message>
    <message>
        <location line="+51"/>
        <source>Сохранение конфигурации в файл</source>
        <translation>Save configuration to file</translation>
    </message>
    <message>
        <location line="+17"/>
        <location line="+152"/>
        <source>Загрузка конфигурации УКИ из файла</source>
        <translation>Load IMD configuration from file</translation>
    </message>
    <message>
        <location line="-101"/>
        <location line="+33"/>
        <source>Данные из файла %1</source>
        <translation>Data from file %1</translation>
    </message>
    <message>
        <location line="-24"/>
        <source>Сохранение архива событий в файл</source>
        <translation>Save event archive to file</translation>
    </message>
    <message>
        <location line="+18"/>
        <source>Загрузка архива из файла</source>
        <translation>Load event archive from file</translation>
    </message>
    <message>
        <location line="+15"/>
        <location line="+35"/>
        <source>[[WARN]]Нечего сохранять!</source>
        <translation>[[WARN]]Nothing to save!</translation>
    </message>
    <message>
        <location line="-30"/>
        <source>Сохранение коррекций ТТ в файл</source>
        <translation>Save CT corrections to file</translation>
    </message>
    <message>
        <location line="+12"/>
        <source>Загрузка коррекций ТТ из файла</source>
        <translation>Load CT corrections from file</translation>
    </message>
    <message>
        <location line="+23"/>
        <source>Сохранение текущей конфигурации в файл</source>
        <translation>Save current configuration to file</translation>
    </message>
    <message>
        <source>Сравнить с файлом…</source>
        <translation>Compare with file…</translation>
    </message>
    <message>
        <source>Сравнить настройки в редакторе с файлом...</source>
        <translation>Compare the settings in the editor with a file...</translation>
    </message>
    <message>
        <source>Сравнить коррекции ТТ с файлом...</source>
        <translation>Compare the CT corrections with a file...</translation>
    </message>
    <message>
        <source>Поля, изменённые после чтения или загрузки, выделены жирным</source>
        <translation>Fields changed since the last read or load are in bold</translation>
    </message>
    <message>
        <source>Изменено: 0</source>
        <translation>Changed: 0</translation>
    </message>
    <message>
        <source>Изменено: %1</source>
        <translation>Changed: %1</translation>
    </message>
    <message>
        <source>Сравнение настроек с файлом</source>
        <translation>Compare settings with file</translation>
    </message>
    <message>
        <source>Сравнение коррекций ТТ с файлом</source>
        <translation>Compare CT corrections with file</translation>
    </message>
    <message>
        <source>[[WARN]]Нечего сравнивать: коррекции ТТ не прочитаны</source>
        <translation>[[WARN]]Nothing to compare: no CT corrections have been read</translation>
    </message>
    <message>
        <source>[[INFO]]Значения из файла в редакторе; в устройство ничего не записано</source>
        <translation>[[INFO]]The file's values are in the editor; nothing was written to the device</translation>
    </message>
    <message>
        <source>Адрес %1, канал %2</source>
        <translation>Address %1, channel %2</translation>
    </message>
</context>
<context>
    <name>SafeWrite</name>
    <message>
        <location filename="../../protocol/safewrite.cpp" line="+1"/>
        <source>не удалось создать папку %1</source>
        <translation>cannot create folder %1</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ошибка записи в файл %1: %2</source>
        <translation>error writing file %1: %2</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>устройство занято</source>
        <translation>device busy</translation>
    </message>
</context>
<context>
    <name>SafeWriteResult</name>
    <message>
        <location filename="../../protocol/safewrite.cpp" line="+1"/>
        <source>%1 (записано %2, прочитано %3)</source>
        <translation>%1 (written %2, read back %3)</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Резервная копия: %1</source>
        <translation>Backup: %1</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>[[OK]]Записано и проверено: %1 из %1</source>
        <translation>[[OK]]Written and verified: %1 of %1</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>[[WARN]]Операция прервана</source>
        <translation>[[WARN]]Operation stopped</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>[[ERR]]Резервная копия не сохранена, запись не выполнена: %1</source>
        <translation>[[ERR]]Backup not saved, nothing written: %1</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>[[ERR]]Проверка записи не выполнена: %1</source>
        <translation>[[ERR]]Write not verified: %1</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>[[ERR]]Ошибка записи: %1</source>
        <translation>[[ERR]]Write failed: %1</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Устройство не приняло: %1</source>
        <translation>Not taken by the device: %1</translation>
    </message>
</context>
<context>
    <name>StatGraphWidget</name>
    <message>
        <location filename="../../stats/statgraphwidget.ui" line="+50"/>
        <source>Вид:</source>
        <translation>View:</translation>
    </message>
    <message>
        <location line="+7"/>
        <source>В виде графика</source>
        <translation>As a graph</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>График</source>
        <translation>Graph</translation>
    </message>
    <message>
        <location line="+32"/>
        <source>В исходном виде</source>
        <translation>As raw text</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Дамп</source>
        <translation>Dump</translation>
    </message>
    <message>
        <location line="+36"/>
        <source>Записать все изменённые каналы в УКИ</source>
        <translation>Write all changed channels to the IMD</translation>
    </message>
    <message>
        <location line="+20"/>
        <source>Загрузить конфигурацию ИМС из файла...</source>
        <translation>Load IMS configuration from file...</translation>
    </message>
    <message>
        <location line="+20"/>
        <source>Сохранить настройки каналов в файл...</source>
        <translation>Save channel settings to file...</translation>
    </message>
    <message>
        <location line="+70"/>
        <source>Канал</source>
        <translation>Channel</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>RLoc</source>
        <translation>RLoc</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Нижний
порог</source>
        <translation>Lower
threshold</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Верхний
порог</source>
        <translation>Upper
threshold</translation>
    </message>
    <message>
        <location line="+72"/>
        <source>Показывать измерения по возрастанию значения</source>
        <translation>Show measurements in ascending order of value</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Сортировать</source>
        <translation>Sort</translation>
    </message>
    <message>
        <location line="+46"/>
        <source>Значение 1</source>
        <translation>Value 1</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Значение 2</source>
        <translation>Value 2</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Значение 3</source>
        <translation>Value 3</translation>
    </message>
    <message>
        <location filename="../../stats/statgraphwidget.cpp" line="+157"/>
        <source>УКИ</source>
        <translation>IMD</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Лок %1</source>
        <translation>Loc %1</translation>
    </message>
    <message>
        <location line="+40"/>
        <source>Показывать на графике</source>
        <translation>Show on graph</translation>
    </message>
    <message>
        <location line="+26"/>
        <source>Обновить данные по каналу</source>
        <translation>Refresh channel data</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>Записать настройки канала в УКИ</source>
        <translation>Write channel settings to the IMD</translation>
    </message>
</context>
<context>
    <name>UkiConfigEditor</name>
    <message>
        <location filename="../../settings/ukiconfigeditor.ui" line="+19"/>
        <source>Уставки по сопротивлению</source>
        <translation>Resistance setpoints</translation>
    </message>
    <message>
        <location line="+6"/>
        <location line="+572"/>
        <source>Rуст1</source>
        <translation>Rset1</translation>
    </message>
    <message>
        <location line="-569"/>
        <location line="+19"/>
        <source>Предупредительный порог сопротивления изоляции</source>
        <translation>Insulation resistance warning threshold</translation>
    </message>
    <message>
        <location line="+3"/>
        <location line="+38"/>
        <location line="+38"/>
        <location line="+803"/>
        <source> кОм</source>
        <translation> kΩ</translation>
    </message>
    <message>
        <location line="-866"/>
        <location line="+539"/>
        <source>Rуст2</source>
        <translation>Rset2</translation>
    </message>
    <message>
        <location line="-536"/>
        <location line="+19"/>
        <source>Аварийный порог сопротивления изоляции</source>
        <translation>Insulation resistance alarm threshold</translation>
    </message>
    <message>
        <location line="+16"/>
        <source>Rлок</source>
        <translation>Rloc</translation>
    </message>
    <message>
        <location line="+3"/>
        <location line="+19"/>
        <source>Порог сопротивления изоляции при поиске</source>
        <translation>Insulation resistance threshold during fault search</translation>
    </message>
    <message>
        <location line="+22"/>
        <source>Уставки по напряжению</source>
        <translation>Voltage setpoints</translation>
    </message>
    <message>
        <location line="+6"/>
        <location line="+563"/>
        <source>Перекос</source>
        <translation>Imbalance</translation>
    </message>
    <message>
        <location line="-544"/>
        <location line="+32"/>
        <source> в</source>
        <translation> V</translation>
    </message>
    <message>
        <location line="-19"/>
        <source>U(-)</source>
        <translation>U(-)</translation>
    </message>
    <message>
        <location line="+35"/>
        <source>Уставки по ёмкости</source>
        <translation>Capacitance setpoints</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Емкость СОПТ</source>
        <translation>Network capacitance</translation>
    </message>
    <message>
        <location line="+19"/>
        <source> мкФ</source>
        <translation> µF</translation>
    </message>
    <message>
        <location line="+19"/>
        <source>Уставки по времени</source>
        <translation>Time settings</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Тк.и.</source>
        <translation>Tmeas</translation>
    </message>
    <message>
        <location line="+20"/>
        <source>АВТ</source>
        <translation>AUTO</translation>
    </message>
    <message>
        <location line="+5"/>
        <location line="+111"/>
        <source>00:20</source>
        <translation>00:20</translation>
    </message>
    <message>
        <location line="-106"/>
        <location line="+111"/>
        <source>00:30</source>
        <translation>00:30</translation>
    </message>
    <message>
        <location line="-106"/>
        <location line="+111"/>
        <source>00:40</source>
        <translation>00:40</translation>
    </message>
    <message>
        <location line="-106"/>
        <location line="+111"/>
        <source>00:50</source>
        <translation>00:50</translation>
    </message>
    <message>
        <location line="-106"/>
        <location line="+111"/>
        <source>01:00</source>
        <translation>01:00</translation>
    </message>
    <message>
        <location line="-103"/>
        <source>Тк.п.</source>
        <translation>Tcycle</translation>
    </message>
    <message>
        <location line="+20"/>
        <source>Непрерывно</source>
        <translation>Continuous</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>5 мин</source>
        <translation>5 min</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>10 мин</source>
        <translation>10 min</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>20 мин</source>
        <translation>20 min</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>30 мин</source>
        <translation>30 min</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>60 мин</source>
        <translation>60 min</translation>
    </message>
    <message>
        <location line="+8"/>
        <source>Тиск</source>
        <translation>Texc</translation>
    </message>
    <message>
        <location line="+20"/>
        <location line="+114"/>
        <location line="+122"/>
        <location line="+66"/>
        <location line="+71"/>
        <location line="+130"/>
        <location line="+65"/>
        <source>ОТКЛ</source>
        <translation>OFF</translation>
    </message>
    <message>
        <location line="-563"/>
        <source>00:10</source>
        <translation>00:10</translation>
    </message>
    <message>
        <location line="+30"/>
        <source>01:10</source>
        <translation>01:10</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>01:20</source>
        <translation>01:20</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>01:30</source>
        <translation>01:30</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>01:40</source>
        <translation>01:40</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>01:50</source>
        <translation>01:50</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>02:00</source>
        <translation>02:00</translation>
    </message>
    <message>
        <location line="+28"/>
        <source>Опции</source>
        <translation>Options</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Групп. поиск</source>
        <translation>Group search</translation>
    </message>
    <message>
        <location line="+25"/>
        <location line="+122"/>
        <location line="+137"/>
        <location line="+130"/>
        <location filename="../../settings/ukiconfigeditor.cpp" line="+183"/>
        <source>ВКЛ</source>
        <translation>ON</translation>
    </message>
    <message>
        <location line="-381"/>
        <source>Режим работы по умолчанию</source>
        <translation>Default operating mode</translation>
    </message>
    <message>
        <location line="+23"/>
        <source>АВТ.</source>
        <translation>AUTO</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>ОТКЛ.</source>
        <translation>OFF</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>ПОИСК</source>
        <translation>SEARCH</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>ИЗМ.R</source>
        <translation>MEAS.R</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>ИЗМ.C</source>
        <translation>MEAS.C</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>ЛОК.</source>
        <translation>LOC.</translation>
    </message>
    <message>
        <location line="+8"/>
        <source>Авто-уст</source>
        <translation>Auto setpoint</translation>
    </message>
    <message>
        <location line="+33"/>
        <source>Мульти-УКИ</source>
        <translation>Multi-IMD</translation>
    </message>
    <message>
        <location line="+33"/>
        <source>Метод контроля:</source>
        <translation>Monitoring method:</translation>
    </message>
    <message>
        <location line="+20"/>
        <source>1</source>
        <translation>1</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>2</source>
        <translation>2</translation>
    </message>
    <message>
        <location line="+8"/>
        <source>Т-мост</source>
        <translation>T-bridge</translation>
    </message>
    <message>
        <location line="+25"/>
        <source>ВКЛ.Н</source>
        <translation>ON.L</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>ВКЛ.В</source>
        <translation>ON.H</translation>
    </message>
    <message>
        <location line="+28"/>
        <source>Псопт</source>
        <translation>Net</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Пмакс</source>
        <translation>Max</translation>
    </message>
    <message>
        <location line="+8"/>
        <source>Rобщ</source>
        <translation>Rtot</translation>
    </message>
    <message>
        <location line="+33"/>
        <source>X9</source>
        <translation>X9</translation>
    </message>
    <message>
        <location line="+20"/>
        <source>Дискр. вх.</source>
        <translation>Digital in</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>4-20 мА</source>
        <translation>4-20 mA</translation>
    </message>
    <message>
        <location line="+8"/>
        <source>Сглаживание контроля</source>
        <translation>Monitoring smoothing</translation>
    </message>
    <message>
        <location line="+22"/>
        <source>%</source>
        <translation>%</translation>
    </message>
    <message>
        <location line="+36"/>
        <location filename="../../settings/ukiconfigeditor.cpp" line="+20"/>
        <source>Дискретный вход</source>
        <translation>Digital input</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Выход 4-20мА</source>
        <translation>4-20 mA output</translation>
    </message>
    <message>
        <location line="+33"/>
        <source>Rмакс</source>
        <translation>Rmax</translation>
    </message>
    <message>
        <location line="+32"/>
        <source>Назначение</source>
        <translation>Function</translation>
    </message>
    <message>
        <location line="+25"/>
        <source>Режим локатора</source>
        <translation>Locator mode</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Т-мост ОТКЛ</source>
        <translation>T-bridge OFF</translation>
    </message>
    <message>
        <location line="+11"/>
        <source>Настройки CAN</source>
        <translation>CAN settings</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Число УКИ</source>
        <translation>Number of IMDs</translation>
    </message>
    <message>
        <location line="+29"/>
        <source>Адрес УКИ</source>
        <translation>IMD address</translation>
    </message>
    <message>
        <location line="+32"/>
        <source>MODBUS</source>
        <translation>MODBUS</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Адрес</source>
        <translation>Address</translation>
    </message>
    <message>
        <location line="+23"/>
        <source>Скорость</source>
        <translation>Baud rate</translation>
    </message>
    <message>
        <location line="+20"/>
        <source>1200</source>
        <translation>1200</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>2400</source>
        <translation>2400</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>4800</source>
        <translation>4800</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>9600</source>
        <translation>9600</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>19200</source>
        <translation>19200</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>38400</source>
        <translation>38400</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>57600</source>
        <translation>57600</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>115200</source>
        <translation>115200</translation>
    </message>
    <message>
        <location line="+8"/>
        <source>Чётность</source>
        <translation>Parity</translation>
    </message>
    <message>
        <location line="+20"/>
        <source>Нет контроля</source>
        <translation>None</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Чётная</source>
        <translation>Even</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Нечётная</source>
        <translation>Odd</translation>
    </message>
    <message>
        <location line="+11"/>
        <source>Дисплей УКИ</source>
        <translation>IMD display</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Яркость</source>
        <translation>Brightness</translation>
    </message>
    <message>
        <location line="+32"/>
        <source>Контраст</source>
        <translation>Contrast</translation>
    </message>
    <message>
        <location line="+32"/>
        <source>Язык интерфейса</source>
        <translation>Display language</translation>
    </message>
    <message>
        <location line="+23"/>
        <source>Русский</source>
        <translation>Russian</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Английский</source>
        <translation>English</translation>
    </message>
    <message>
        <location filename="../../settings/ukiconfigeditor.cpp" line="-6"/>
        <source>Мульти-УКИ ОТКЛ</source>
        <translation>Multi-IMD OFF</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>4-20</source>
        <translation>4-20</translation>
    </message>
</context>
<context>
    <name>UkpsConfigEditor</name>
    <message>
        <location filename="../../settings/ukpsconfigeditor.ui" line="+25"/>
        <location filename="../../settings/ukpsconfigeditor.cpp" line="+247"/>
        <source>Уставки КИ</source>
        <translation>Insulation setpoints</translation>
    </message>
    <message>
        <location line="+14"/>
        <source>Уставки по сопротивлению</source>
        <translation>Resistance setpoints</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Предупредительный порог сопротивления изоляции</source>
        <translation>Insulation resistance warning threshold</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Rуст1</source>
        <translation>Rset1</translation>
    </message>
    <message>
        <location line="+25"/>
        <location line="+41"/>
        <location line="+41"/>
        <source> кОм</source>
        <translation> kΩ</translation>
    </message>
    <message>
        <location line="-69"/>
        <source>Аварийный порог сопротивления изоляции</source>
        <translation>Insulation resistance alarm threshold</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Rуст2</source>
        <translation>Rset2</translation>
    </message>
    <message>
        <location line="+38"/>
        <source>Порог сопротивления изоляции при поиске</source>
        <translation>Insulation resistance threshold during fault search</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Rлок</source>
        <translation>Rloc</translation>
    </message>
    <message>
        <location line="+41"/>
        <source>Начальное значение ёмкости</source>
        <translation>Initial capacitance value</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Cстарт</source>
        <translation>Cstart</translation>
    </message>
    <message>
        <location line="+64"/>
        <source>Уставки по времени</source>
        <translation>Time settings</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Период измерений в режиме контроля</source>
        <translation>Measurement period in monitoring mode</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Тк.п.</source>
        <translation>Tcycle</translation>
    </message>
    <message>
        <location line="+26"/>
        <source>Непрерывно</source>
        <translation>Continuous</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>5 мин</source>
        <translation>5 min</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>10 мин</source>
        <translation>10 min</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>20 мин</source>
        <translation>20 min</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>30 мин</source>
        <translation>30 min</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>60 мин</source>
        <translation>60 min</translation>
    </message>
    <message>
        <location line="+8"/>
        <source>Время полного измерения</source>
        <translation>Full measurement time</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Тк.и.</source>
        <translation>Tmeas</translation>
    </message>
    <message>
        <location line="+26"/>
        <source>00:14</source>
        <translation>00:14</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>00:24</source>
        <translation>00:24</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>00:34</source>
        <translation>00:34</translation>
    </message>
    <message>
        <location line="+17"/>
        <location line="+134"/>
        <source>Уставки по напряжению</source>
        <translation>Voltage setpoints</translation>
    </message>
    <message>
        <location line="-128"/>
        <source>Наибольший перекос напряжения между полюсами</source>
        <translation>Greatest voltage imbalance between the poles</translation>
    </message>
    <message>
        <location line="+3"/>
        <location line="+2071"/>
        <location line="+587"/>
        <source>Перекос</source>
        <translation>Imbalance</translation>
    </message>
    <message>
        <location line="-2633"/>
        <location line="+41"/>
        <location line="+93"/>
        <location line="+41"/>
        <location line="+293"/>
        <location line="+463"/>
        <location line="+41"/>
        <source> В</source>
        <translation> V</translation>
    </message>
    <message>
        <location line="-959"/>
        <source>Наибольшее напряжение отрицательного полюса относительно земли</source>
        <translation>Greatest voltage of the negative pole to earth</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>U(-)</source>
        <translation>U(-)</translation>
    </message>
    <message>
        <location line="+70"/>
        <source>Уставки АБ</source>
        <translation>Battery setpoints</translation>
    </message>
    <message>
        <location line="+20"/>
        <source>Наибольшее напряжение АБ</source>
        <translation>Highest battery voltage</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>U max</source>
        <translation>U max</translation>
    </message>
    <message>
        <location line="+38"/>
        <source>Наименьшее напряжение АБ</source>
        <translation>Lowest battery voltage</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>U min</source>
        <translation>U min</translation>
    </message>
    <message>
        <location line="+47"/>
        <source>Уставки по току</source>
        <translation>Current setpoints</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Наименьший ток разряда</source>
        <translation>Minimum discharge current</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>I разряда</source>
        <translation>I discharge</translation>
    </message>
    <message>
        <location line="+25"/>
        <location line="+41"/>
        <source> мА</source>
        <translation> mA</translation>
    </message>
    <message>
        <location line="-28"/>
        <source>Наименьший ток подзаряда</source>
        <translation>Minimum charge current</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>I подзаряда</source>
        <translation>I charge</translation>
    </message>
    <message>
        <location line="+38"/>
        <source>Шунт тока АБ</source>
        <translation>Battery current shunt</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Шунт</source>
        <translation>Shunt</translation>
    </message>
    <message>
        <location line="+26"/>
        <source>75мв, 20А</source>
        <translation>75 mV, 20 A</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>75мв, 30А</source>
        <translation>75 mV, 30 A</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>75мв, 50А</source>
        <translation>75 mV, 50 A</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>75мв, 75А</source>
        <translation>75 mV, 75 A</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>75мв, 100А</source>
        <translation>75 mV, 100 A</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>75мв, 150А</source>
        <translation>75 mV, 150 A</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>75мв, 200А</source>
        <translation>75 mV, 200 A</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>75мв, 300А</source>
        <translation>75 mV, 300 A</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>75мв, 400А</source>
        <translation>75 mV, 400 A</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>75мв, 500А</source>
        <translation>75 mV, 500 A</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>75мв, 750А</source>
        <translation>75 mV, 750 A</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>75мв, 1000А</source>
        <translation>75 mV, 1000 A</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>75мв, 1500А</source>
        <translation>75 mV, 1500 A</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>75мв, 2000А</source>
        <translation>75 mV, 2000 A</translation>
    </message>
    <message>
        <location line="+17"/>
        <source>Симметрия</source>
        <translation>Symmetry</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Число элементов в АБ</source>
        <translation>Number of cells in the battery</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Число элементов</source>
        <translation>Cells</translation>
    </message>
    <message>
        <location line="+35"/>
        <source>Смещение симметрии</source>
        <translation>Symmetry offset</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Смещение</source>
        <translation>Offset</translation>
    </message>
    <message>
        <location line="+53"/>
        <source>Пороги температур</source>
        <translation>Temperature thresholds</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Верхний порог температуры</source>
        <translation>Upper temperature threshold</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>t max</source>
        <translation>t max</translation>
    </message>
    <message>
        <location line="+25"/>
        <location line="+41"/>
        <source> °C</source>
        <translation> °C</translation>
    </message>
    <message>
        <location line="-28"/>
        <source>Нижний порог температуры</source>
        <translation>Lower temperature threshold</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>t min</source>
        <translation>t min</translation>
    </message>
    <message>
        <location line="+64"/>
        <source>Задержки сигнализации</source>
        <translation>Alarm delays</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Превышение Uab</source>
        <translation>Ubat high</translation>
    </message>
    <message>
        <location line="+25"/>
        <location line="+38"/>
        <location line="+38"/>
        <location line="+38"/>
        <location line="+38"/>
        <location line="+41"/>
        <location line="+41"/>
        <source> сек</source>
        <translation> s</translation>
    </message>
    <message>
        <location line="-221"/>
        <source>Снижение Uab</source>
        <translation>Ubat low</translation>
    </message>
    <message>
        <location line="+38"/>
        <source>Снижение Iподз</source>
        <translation>Icharge low</translation>
    </message>
    <message>
        <location line="+38"/>
        <source>Обрыв АБ</source>
        <translation>Battery break</translation>
    </message>
    <message>
        <location line="+38"/>
        <location line="+608"/>
        <source>Разряд АБ</source>
        <translation>Battery discharge</translation>
    </message>
    <message>
        <location line="-570"/>
        <location line="+694"/>
        <source>Пульсации по напряжению</source>
        <translation>Voltage ripple</translation>
    </message>
    <message>
        <location line="-691"/>
        <source>Пульсации U</source>
        <translation>Ripple U</translation>
    </message>
    <message>
        <location line="+38"/>
        <location line="+715"/>
        <source>Пульсации по току</source>
        <translation>Current ripple</translation>
    </message>
    <message>
        <location line="-712"/>
        <source>Пульсации I</source>
        <translation>Ripple I</translation>
    </message>
    <message>
        <location line="+47"/>
        <location line="+1418"/>
        <source>Хвост</source>
        <translation>Tail</translation>
    </message>
    <message>
        <location line="-1412"/>
        <source>Верхний порог напряжения хвоста</source>
        <translation>Upper tail voltage threshold</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Uх max</source>
        <translation>Utail max</translation>
    </message>
    <message>
        <location line="+38"/>
        <source>Нижний порог напряжения хвоста</source>
        <translation>Lower tail voltage threshold</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Uх min</source>
        <translation>Utail min</translation>
    </message>
    <message>
        <location line="+47"/>
        <source>Уровни пульсаций</source>
        <translation>Ripple levels</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Порог пульсаций по напряжению</source>
        <translation>Voltage ripple threshold</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Пульсация U</source>
        <translation>Ripple U</translation>
    </message>
    <message>
        <location line="+25"/>
        <location line="+47"/>
        <source> %</source>
        <translation> %</translation>
    </message>
    <message>
        <location line="-28"/>
        <source>Порог пульсаций по току</source>
        <translation>Current ripple threshold</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Пульсация I</source>
        <translation>Ripple I</translation>
    </message>
    <message>
        <location line="+44"/>
        <source>Порог пульсаций U для обрыва</source>
        <translation>Voltage ripple threshold for a circuit break</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>U обрыва</source>
        <translation>U break</translation>
    </message>
    <message>
        <location line="+25"/>
        <source> мв</source>
        <translation> mV</translation>
    </message>
    <message>
        <location line="+48"/>
        <source>Сигнализация</source>
        <translation>Alarm relays</translation>
    </message>
    <message>
        <location line="+14"/>
        <source>Аккумуляторная батарея</source>
        <translation>Battery</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Напряжение АБ выше порога</source>
        <translation>Battery voltage above threshold</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Uаб &gt;</source>
        <translation>Ubat &gt;</translation>
    </message>
    <message>
        <location line="+26"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+77"/>
        <location line="+94"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+77"/>
        <location line="+62"/>
        <location line="+77"/>
        <location line="+62"/>
        <source>----</source>
        <translation>----</translation>
    </message>
    <message>
        <location line="-1188"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+77"/>
        <location line="+94"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+77"/>
        <location line="+62"/>
        <location line="+77"/>
        <location line="+62"/>
        <source>Реле 1</source>
        <translation>Relay 1</translation>
    </message>
    <message>
        <location line="-1188"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+77"/>
        <location line="+94"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+77"/>
        <location line="+62"/>
        <location line="+77"/>
        <location line="+62"/>
        <source>Реле 2</source>
        <translation>Relay 2</translation>
    </message>
    <message>
        <location line="-1188"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+77"/>
        <location line="+94"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+77"/>
        <location line="+62"/>
        <location line="+77"/>
        <location line="+62"/>
        <source>Реле 3</source>
        <translation>Relay 3</translation>
    </message>
    <message>
        <location line="-1188"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+77"/>
        <location line="+94"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+77"/>
        <location line="+62"/>
        <location line="+77"/>
        <location line="+62"/>
        <source>Реле 4</source>
        <translation>Relay 4</translation>
    </message>
    <message>
        <location line="-1188"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+77"/>
        <location line="+94"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+62"/>
        <location line="+77"/>
        <location line="+62"/>
        <location line="+77"/>
        <location line="+62"/>
        <source>Реле 5</source>
        <translation>Relay 5</translation>
    </message>
    <message>
        <location line="-1185"/>
        <source>Напряжение АБ ниже порога</source>
        <translation>Battery voltage below threshold</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Uаб &lt;</source>
        <translation>Ubat &lt;</translation>
    </message>
    <message>
        <location line="+59"/>
        <source>Снижение тока подзаряда</source>
        <translation>Charge current low</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Iподз &lt;</source>
        <translation>Icharge &lt;</translation>
    </message>
    <message>
        <location line="+62"/>
        <source>Разряд</source>
        <translation>Discharge</translation>
    </message>
    <message>
        <location line="+59"/>
        <source>Обрыв цепи АБ</source>
        <translation>Battery circuit break</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Обрыв</source>
        <translation>Break</translation>
    </message>
    <message>
        <location line="+62"/>
        <source>Пульс. U</source>
        <translation>Ripple U</translation>
    </message>
    <message>
        <location line="+62"/>
        <source>Пульс. I</source>
        <translation>Ripple I</translation>
    </message>
    <message>
        <location line="+59"/>
        <source>Нарушение симметрии</source>
        <translation>Symmetry fault</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Симметр.</source>
        <translation>Symmetry</translation>
    </message>
    <message>
        <location line="+68"/>
        <source>Общая</source>
        <translation>General</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Неисправность</source>
        <translation>Fault</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>ОбщCигн</source>
        <translation>Gen. alarm</translation>
    </message>
    <message>
        <location line="+85"/>
        <source>Изоляция</source>
        <translation>Insulation</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Сопротивление изоляции ниже Rуст1</source>
        <translation>Insulation resistance below Rset1</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Rизо1</source>
        <translation>Riso1</translation>
    </message>
    <message>
        <location line="+59"/>
        <source>Сопротивление изоляции ниже Rуст2</source>
        <translation>Insulation resistance below Rset2</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Rизо2</source>
        <translation>Riso2</translation>
    </message>
    <message>
        <location line="+59"/>
        <source>Снижение сопротивления изоляции полюса R+</source>
        <translation>Insulation resistance of pole R+ low</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Сниж R+</source>
        <translation>Low R+</translation>
    </message>
    <message>
        <location line="+59"/>
        <source>Снижение сопротивления изоляции полюса R-</source>
        <translation>Insulation resistance of pole R- low</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Сниж R-</source>
        <translation>Low R-</translation>
    </message>
    <message>
        <location line="+59"/>
        <source>Перекос напряжений</source>
        <translation>Voltage imbalance</translation>
    </message>
    <message>
        <location line="+62"/>
        <source>Напряжение U(-) выше порога</source>
        <translation>Voltage U(-) above threshold</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>U ( - ) &gt;</source>
        <translation>U ( - ) &gt;</translation>
    </message>
    <message>
        <location line="+68"/>
        <source>Температура</source>
        <translation>Temperature</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Повышение температуры</source>
        <translation>Temperature high</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Повыш. t</source>
        <translation>High t</translation>
    </message>
    <message>
        <location line="+59"/>
        <source>Снижение температуры</source>
        <translation>Temperature low</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Сниж. t</source>
        <translation>Low t</translation>
    </message>
    <message>
        <location line="+74"/>
        <source>Превышение напряжения хвоста</source>
        <translation>Tail voltage high</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Прев. Uх</source>
        <translation>High Utail</translation>
    </message>
    <message>
        <location line="+59"/>
        <source>Снижение напряжения хвоста</source>
        <translation>Tail voltage low</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Сниж. Uх</source>
        <translation>Low Utail</translation>
    </message>
    <message>
        <location line="+91"/>
        <location line="+14"/>
        <source>Опции</source>
        <translation>Options</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Режим работы по умолчанию</source>
        <translation>Default operating mode</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Режим по умолч.</source>
        <translation>Default mode</translation>
    </message>
    <message>
        <location line="+26"/>
        <source>КИ+АБ</source>
        <translation>INS+BAT</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>КИ</source>
        <translation>INS</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>АБ</source>
        <translation>BAT</translation>
    </message>
    <message>
        <location line="+8"/>
        <source>Т-мост</source>
        <translation>T-bridge</translation>
    </message>
    <message>
        <location line="+26"/>
        <location line="+47"/>
        <location line="+84"/>
        <location line="+42"/>
        <location line="+42"/>
        <source>ОТКЛ</source>
        <translation>OFF</translation>
    </message>
    <message>
        <location line="-210"/>
        <source>ВКЛ.Н</source>
        <translation>ON.L</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>ВКЛ.В</source>
        <translation>ON.H</translation>
    </message>
    <message>
        <location line="+8"/>
        <source>Контроль по общему сопротивлению сети</source>
        <translation>Monitoring by total network resistance</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Rобщ.</source>
        <translation>Rtot</translation>
    </message>
    <message>
        <location line="+31"/>
        <location line="+84"/>
        <location line="+42"/>
        <location line="+42"/>
        <source>ВКЛ</source>
        <translation>ON</translation>
    </message>
    <message>
        <location line="-160"/>
        <source>Опорное значение перекоса</source>
        <translation>Imbalance reference</translation>
    </message>
    <message>
        <location line="+29"/>
        <source>Псопт</source>
        <translation>Net</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Пмакс</source>
        <translation>Max</translation>
    </message>
    <message>
        <location line="+8"/>
        <source>Контроль симметрии</source>
        <translation>Symmetry monitoring</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Симметр</source>
        <translation>Symmetry</translation>
    </message>
    <message>
        <location line="+39"/>
        <source>Контроль напряжения хвоста</source>
        <translation>Tail voltage monitoring</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Uхвост</source>
        <translation>Utail</translation>
    </message>
    <message>
        <location line="+39"/>
        <source>Контроль температуры</source>
        <translation>Temperature monitoring</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Темпер.</source>
        <translation>Temp.</translation>
    </message>
    <message>
        <location line="+65"/>
        <source>Дисплей</source>
        <translation>Display</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Яркость</source>
        <translation>Brightness</translation>
    </message>
    <message>
        <location line="+38"/>
        <source>Контраст</source>
        <translation>Contrast</translation>
    </message>
    <message>
        <location line="+38"/>
        <source>Язык интерфейса</source>
        <translation>Display language</translation>
    </message>
    <message>
        <location line="+26"/>
        <source>Русский</source>
        <translation>Russian</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Английский</source>
        <translation>English</translation>
    </message>
    <message>
        <location line="+17"/>
        <source>MODBUS</source>
        <translation>MODBUS</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Адрес</source>
        <translation>Address</translation>
    </message>
    <message>
        <location line="+35"/>
        <source>Скорость</source>
        <translation>Baud rate</translation>
    </message>
    <message>
        <location line="+26"/>
        <source>1200</source>
        <translation>1200</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>2400</source>
        <translation>2400</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>4800</source>
        <translation>4800</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>9600</source>
        <translation>9600</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>19200</source>
        <translation>19200</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>38400</source>
        <translation>38400</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>57600</source>
        <translation>57600</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>115200</source>
        <translation>115200</translation>
    </message>
    <message>
        <location line="+8"/>
        <source>Чётность</source>
        <translation>Parity</translation>
    </message>
    <message>
        <location line="+26"/>
        <source>Нет контроля</source>
        <translation>None</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Чётная</source>
        <translation>Even</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Нечётная</source>
        <translation>Odd</translation>
    </message>
    <message>
        <location filename="../../settings/ukpsconfigeditor.cpp" line="+22"/>
        <source>АВТО</source>
        <translation>AUTO</translation>
    </message>
</context>
<context>
    <name>ValueComparison</name>
    <message>
        <source>Различаются: %1, совпадают: %2, только в редакторе: %3, только в файле: %4</source>
        <translation>Different: %1, equal: %2, only in the editor: %3, only in the file: %4</translation>
    </message>
    <message>
        <source>Параметр</source>
        <translation>Setting</translation>
    </message>
    <message>
        <source>Ключ</source>
        <translation>Key</translation>
    </message>
    <message>
        <source>В редакторе</source>
        <translation>In the editor</translation>
    </message>
    <message>
        <source>В файле</source>
        <translation>In the file</translation>
    </message>
</context>
</TS>
