<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="ru">
<context>
    <name>AboutDialog</name>
    <message>
        <location filename="../../ui/aboutdialog.ui" line="14"/>
        <source>О программе</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../ui/aboutdialog.ui" line="63"/>
        <source>&lt;p&gt;&lt;span style=&quot; font-size:12pt; font-weight:600;&quot;&gt;%%APPNAME%%&lt;/span&gt; (%%VERSION%%)&lt;/p&gt;
&lt;p&gt;%%APPDESCRIPTION%%&lt;/p&gt;
&lt;p&gt;© 2026 Marvolet. Все права защищены.&lt;/p&gt;
&lt;p&gt;&lt;a href=&quot;mailto:service@marvolet.example&quot;&gt;service@marvolet.example&lt;/a&gt;&lt;/p&gt;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../ui/aboutdialog.cpp" line="14"/>
        <source>версия %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../ui/aboutdialog.cpp" line="16"/>
        <source>КИРАНТО-линк</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../ui/aboutdialog.cpp" line="19"/>
        <source>Сервисная программа для устройств КИРАНТО</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ArchiveData</name>
    <message>
        <location filename="../../models/archivedata.cpp" line="137"/>
        <source>#</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="139"/>
        <source>Дата/время</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="141"/>
        <source>Тип события</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="143"/>
        <source>Данные</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="157"/>
        <source>Запись с замерами сопротивления (периодическая)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="160"/>
        <source>Дублирование адресов локаторов</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="163"/>
        <source>Неисправность ТТ</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="166"/>
        <source>Неисправность ТТ в локаторе</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="169"/>
        <source>Потеря связи с локатором</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="172"/>
        <source>Потеря связи с УКИ</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="175"/>
        <source>Дублирование адресов УКИ</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="178"/>
        <source>Адрес УКИ вне допуска</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="181"/>
        <source>Адрес локатора вне допуска</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="182"/>
        <source>Ёмкость сети</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="183"/>
        <source>Результаты поиска</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="186"/>
        <source>Неверная конфигурация (слишком много включённых локаторов)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="191"/>
        <location filename="../../models/archivedata.cpp" line="194"/>
        <location filename="../../models/archivedata.cpp" line="231"/>
        <source>Выключение питания</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="197"/>
        <source>Адрес анешнего локатора такой же как у УКИ</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="200"/>
        <source>Снижение R ниже R1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="203"/>
        <source>Снижение R ниже R2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="206"/>
        <source>Перекос напряжения</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="209"/>
        <source>Обрыв Т-моста</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="212"/>
        <source>Неисправность устройства</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="215"/>
        <source>Обрыв АБ</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="216"/>
        <source>Разряд АБ</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="219"/>
        <source>Превышение напряжения АБ</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="222"/>
        <source>Снижение напряжения АБ</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="225"/>
        <source>Превышен уровень пульсаций напряжения</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="228"/>
        <source>Превышен уровень пульсаций тока</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="234"/>
        <source>Включение питания и версия ПО</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="237"/>
        <source>Нарушение симметрии АБ</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="240"/>
        <source>Повышение температуры</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="243"/>
        <source>Снижение температуры</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="246"/>
        <source>Повышение напряжения &quot;хвоста&quot;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="249"/>
        <source>Снижение напряжения &quot;хвоста&quot;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="252"/>
        <source>пропало: Нарушение симметрии АБ</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="255"/>
        <source>пропало: Повышение температуры</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="258"/>
        <source>пропало: Снижение температуры</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="261"/>
        <source>пропало: Повышение напряжения &quot;хвоста&quot;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="264"/>
        <source>пропало: Снижение напряжения &quot;хвоста&quot;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="267"/>
        <source>пропало: Неисправность устройства</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="270"/>
        <source>пропало: Обрыв АБ</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="273"/>
        <source>пропало: Разряд АБ</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="276"/>
        <source>пропало: Превышение напряжения АБ</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="279"/>
        <source>пропало: Снижение напряжения АБ</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="282"/>
        <source>пропало: Превышен уровень пульсаций напряжения</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="285"/>
        <source>пропало: Превышен уровень пульсаций тока</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="288"/>
        <source>Превышено напряжение на отрицательном полюсе</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="291"/>
        <source>У другого УКИ включена опция МультиУКИ, а у нас нет</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="293"/>
        <source>ET_DEBUG</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="296"/>
        <source>ET_FEED_COMPLEX</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="312"/>
        <location filename="../../models/archivedata.cpp" line="387"/>
        <source>-</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="323"/>
        <source>Rобщ = %1кОм, R+/- = %2/%3кОм; Uаб = %4В, U+/- = %5/%6В</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="329"/>
        <source>Rобщ = %1кОм, R+/- = %2/%3кОм; U+/- = %4/%5В</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="335"/>
        <source>Адрес: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="337"/>
        <source>Адрес: УКИ, ТТ: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="341"/>
        <source>Адрес: %1, ТТ: %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="343"/>
        <source>С = %1мкФ, I = %2мкА</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="345"/>
        <source>Адрес: %1, канал: %2: Rизо = %3кОм, C = %4мкФ I = %5мкА</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="351"/>
        <source>I = %1 мА</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="356"/>
        <source>U АБ = %1 в</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="359"/>
        <source>Пульс. U = %1%</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="362"/>
        <source>Пульс. I = %1%</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="364"/>
        <source>Версия прошивки: %1.%2.%3</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="367"/>
        <source>Асимметрия = %1 в</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="372"/>
        <source>T = %1°</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivedata.cpp" line="377"/>
        <source>Uх.э. = %1 в</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ArchiveFilterProxy</name>
    <message>
        <location filename="../../models/archivefilterproxy.cpp" line="17"/>
        <source>Ёмкость</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivefilterproxy.cpp" line="19"/>
        <source>Аварии КИ</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivefilterproxy.cpp" line="21"/>
        <source>Аварии АБ</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivefilterproxy.cpp" line="23"/>
        <source>Диагн. события</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivefilterproxy.cpp" line="25"/>
        <source>Авария темп.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivefilterproxy.cpp" line="27"/>
        <source>Поиск</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivefilterproxy.cpp" line="29"/>
        <source>Контроль</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/archivefilterproxy.cpp" line="68"/>
        <source>Всё</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ConfigDialog</name>
    <message>
        <location filename="../../ui/configdialog.ui" line="14"/>
        <source>Настройки</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../ui/configdialog.ui" line="24"/>
        <source>Подключение</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../ui/configdialog.ui" line="36"/>
        <source>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;Последовательный порт, к которому подключён датчик.&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../ui/configdialog.ui" line="39"/>
        <source>Порт</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../ui/configdialog.ui" line="68"/>
        <source>Выбор устройства (для автономного режима)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../ui/configdialog.ui" line="74"/>
        <source>УКПС КИРАНТО-КС</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../ui/configdialog.ui" line="81"/>
        <source>УКПС КИРАНТО-КС-2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../ui/configdialog.ui" line="88"/>
        <source>УКБ КИРАНТО-АБ</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../ui/configdialog.ui" line="95"/>
        <source>УКИ КИРАНТО</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../ui/configdialog.ui" line="119"/>
        <source>Прочее</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../ui/configdialog.cpp" line="11"/>
        <source> (отсутствует в системе)</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>CtCorrections</name>
    <message>
        <location filename="../../models/ctcorrections.cpp" line="124"/>
        <source>Адрес</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/ctcorrections.cpp" line="126"/>
        <source>Канал</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/ctcorrections.cpp" line="128"/>
        <source>Коэфф. усиления</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/ctcorrections.cpp" line="130"/>
        <source>Сдвиг фазы</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>DeviceVariant</name>
    <message>
        <location filename="../../app/programsettings.cpp" line="9"/>
        <source>УКПС КИРАНТО-КС</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../app/programsettings.cpp" line="10"/>
        <source>УКБ КИРАНТО-АБ</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../app/programsettings.cpp" line="11"/>
        <source>УКПС КИРАНТО-КС-2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../app/programsettings.cpp" line="12"/>
        <source>УКИ КИРАНТО</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../app/programsettings.cpp" line="28"/>
        <source>Неизвестное устройство</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>DfuFile</name>
    <message>
        <location filename="../../firmware/dfufile.cpp" line="203"/>
        <source>В файле %1 целей, допускается не более %2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../firmware/dfufile.cpp" line="211"/>
        <source>Альтернативная настройка цели «%1» вне диапазона 0..255: %2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../firmware/dfufile.cpp" line="219"/>
        <source>Имя цели «%1» занимает %2 байт, допускается не более %3.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../firmware/dfufile.cpp" line="226"/>
        <source>Имя цели «%1» содержит нулевой символ.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../firmware/dfufile.cpp" line="232"/>
        <source>Блок цели «%1» по адресу 0x%2 (%3 байт) выходит за 4 ГиБ адресного пространства.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../firmware/dfufile.cpp" line="240"/>
        <source>Размер цели «%1» превышает 4 ГиБ.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../firmware/dfufile.cpp" line="245"/>
        <source>Размер файла превышает 4 ГиБ.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../firmware/dfufile.cpp" line="257"/>
        <source>Файл в %1 байт слишком велик для сборки в памяти.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../firmware/dfufile.cpp" line="276"/>
        <location filename="../../firmware/dfufile.cpp" line="283"/>
        <source>Не удалось записать файл %1: %2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../firmware/dfufile.cpp" line="293"/>
        <source>Файл DFU повреждён: %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../firmware/dfufile.cpp" line="297"/>
        <source>файл короче %1 байт</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../firmware/dfufile.cpp" line="301"/>
        <source>нет суффикса DFU</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../firmware/dfufile.cpp" line="304"/>
        <source>версия DFU 0x%1 вместо 0x011A</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../firmware/dfufile.cpp" line="308"/>
        <source>контрольная сумма 0x%1 в файле, вычислена 0x%2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../firmware/dfufile.cpp" line="315"/>
        <source>нет подписи DfuSe</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../firmware/dfufile.cpp" line="318"/>
        <source>версия формата %1 вместо 1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../firmware/dfufile.cpp" line="322"/>
        <source>размер образа %1 не равен размеру файла без суффикса %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../firmware/dfufile.cpp" line="331"/>
        <source>цель %1 обрывается на заголовке</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../firmware/dfufile.cpp" line="333"/>
        <source>у цели %1 нет подписи Target</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../firmware/dfufile.cpp" line="343"/>
        <source>цель %1 размером %2 байт выходит за конец файла</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../firmware/dfufile.cpp" line="348"/>
        <location filename="../../firmware/dfufile.cpp" line="352"/>
        <source>блок %1 цели %2 выходит за её размер</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../firmware/dfufile.cpp" line="356"/>
        <source>размер цели %1 (%2 байт) не равен сумме её блоков (%3 байт)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../firmware/dfufile.cpp" line="363"/>
        <source>после целей %1 лишних байт</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../firmware/dfufile.cpp" line="373"/>
        <source>Не удалось прочитать файл %1: %2.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>DfuSelfTest</name>
    <message>
        <location filename="../../firmware/dfuselftest.cpp" line="39"/>
        <source>Самопроверка файла DFU не пройдена: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../firmware/dfuselftest.cpp" line="50"/>
        <source>не удалось прочитать файл %1: %2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../firmware/dfuselftest.cpp" line="57"/>
        <source>в файле %1 байт вместо %2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../firmware/dfuselftest.cpp" line="61"/>
        <source>неверный префикс файла.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../firmware/dfuselftest.cpp" line="65"/>
        <source>неверная контрольная сумма.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../firmware/dfuselftest.cpp" line="71"/>
        <source>прочитанное содержимое отличается от записанного.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Locators</name>
    <message>
        <location filename="../../models/bitstring.cpp" line="37"/>
        <source>X</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/bitstring.cpp" line="39"/>
        <source>И</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/bitstring.cpp" line="41"/>
        <source>и</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/bitstring.cpp" line="43"/>
        <source>З</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../models/bitstring.cpp" line="45"/>
        <source>О</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <location filename="../../app/main.cpp" line="9"/>
        <source>KIRANTO-Link</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>SerialLink</name>
    <message>
        <location filename="../../link/seriallink.cpp" line="35"/>
        <source>Ошибка открытия порта %1 : %2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../link/seriallink.cpp" line="49"/>
        <source>Ставим команду в очередь: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../link/seriallink.cpp" line="70"/>
        <source>Ошибка: %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../link/seriallink.cpp" line="87"/>
        <source>Ошибка чтения: %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../link/seriallink.cpp" line="95"/>
        <source>Неожиданные данные на приёме: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location filename="../../link/seriallink.cpp" line="119"/>
        <source>Отработали команду: %1, результат: %2. Время выполнения %3 мс</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
