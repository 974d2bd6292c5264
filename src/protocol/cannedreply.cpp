#include "cannedreply.h"

#include <QStringList>

namespace {

struct CannedRow
{
    double value1;
    double value2;
    double value3;
};

const CannedRow monitorChannel0[] = {
        {0.21018, -0.2733, 220},
        {0.20991, -0.27297, 220},
        {0.20878, -0.27254, 221},
        {0.20899, -0.27377, 219},
        {0.20861, -0.2732, 220},
        {0.20937, -0.27264, 220},
        {0.20856, -0.27335, 219},
        {0.20886, -0.27317, 219},
        {0.20974, -0.27381, 220},
        {0.20945, -0.27313, 219},
        {0.20937, -0.2734, 220},
        {0.20857, -0.27271, 220},
        {0.20913, -0.27319, 222},
        {0.20896, -0.27278, 220},
        {0.20865, -0.27314, 220},
        {0.20945, -0.27374, 220},
};
const CannedRow monitorOtherChannels[] = {
        {0.21018, -0.2733, 39},
        {0.20991, -0.27297, 38},
        {0.20878, -0.27254, 37},
        {0.20899, -0.27377, 38},
        {0.20861, -0.2732, 36},
        {0.20937, -0.27264, 40},
        {0.20856, -0.27335, 36},
        {0.20886, -0.27317, 40},
        {0.20974, -0.27381, 36},
        {0.20945, -0.27313, 40},
        {0.20937, -0.2734, 37},
        {0.20857, -0.27271, 39},
        {0.20913, -0.27319, 40},
        {0.20896, -0.27278, 39},
        {0.20865, -0.27314, 38},
        {0.20945, -0.27374, 39},
};
const CannedRow locator5[] = {
        {0.20669, -0.37097, 177}, {0.20389, -0.37331, 177}, {0.20398, -0.37313, 177},
        {0.2051, -0.37031, 177},  {0.20435, -0.37082, 177}, {0.20337, -0.3728, 177},
        {0.20694, -0.37108, 177}, {0.20574, -0.37371, 178}, {0.20488, -0.37097, 177},
        {0.2072, -0.37231, 176},  {0.20644, -0.37171, 177}, {0.20453, -0.3726, 177},
        {0.20561, -0.37218, 176}, {0.20725, -0.3721, 176},  {0.20327, -0.37119, 178},
        {0.20747, -0.37071, 177}, {0.20622, -0.37045, 177}, {0.2031, -0.37215, 177},
        {0.20575, -0.37203, 177}, {0.20646, -0.37348, 177}, {0.20479, -0.37033, 177},
        {0.20336, -0.3722, 178},  {0.20425, -0.37345, 177}, {0.20689, -0.37289, 177},
        {0.20744, -0.37127, 177}, {0.20731, -0.3734, 177},  {0.20368, -0.37137, 176},
        {0.20518, -0.37164, 177}, {0.20427, -0.37342, 178}, {0.20466, -0.37173, 177},
        {0.20611, -0.37194, 178}, {0.20595, -0.37104, 177}, {0.20705, -0.37088, 178},
        {0.20477, -0.3724, 176},  {0.20517, -0.3724, 177},  {0.2033, -0.37316, 177},
        {0.20349, -0.3716, 176},  {0.203, -0.37339, 176},   {0.20727, -0.37155, 176},
        {0.20693, -0.37154, 177}, {0.20585, -0.37018, 178}, {0.20464, -0.37351, 177},
        {0.20747, -0.37214, 177}, {0.2044, -0.37342, 177},  {0.20633, -0.37209, 177},
        {0.20532, -0.37318, 178}, {0.20463, -0.37124, 176}, {0.20641, -0.37281, 176},
        {0.20613, -0.37296, 177}, {0.20709, -0.37258, 177}, {0.2054, -0.37088, 177},
        {0.20586, -0.37155, 177}, {0.20663, -0.37073, 177}, {0.2039, -0.37203, 176},
        {0.20745, -0.37084, 177}, {0.20417, -0.37123, 177}, {0.20501, -0.37025, 177},
        {0.2073, -0.37254, 177},  {0.20346, -0.37212, 177}, {0.20392, -0.3715, 178},
        {0.20678, -0.37208, 177}, {0.2066, -0.37366, 176},  {0.20709, -0.37087, 177},
        {0.20515, -0.37329, 177}, {0.20339, -0.37022, 177}, {0.20508, -0.37103, 176},
        {0.20626, -0.37332, 177}, {0.20312, -0.37164, 177}, {0.20663, -0.37342, 178},
        {0.20741, -0.37137, 177}, {0.2037, -0.37181, 176},  {0.20306, -0.37012, 176},
        {0.20537, -0.37027, 177}, {0.20744, -0.37322, 177}, {0.20313, -0.37315, 178},
        {0.20408, -0.37165, 177}, {0.20545, -0.37066, 176}, {0.2071, -0.37258, 177},
        {0.20598, -0.37074, 178}, {0.20328, -0.37352, 177},
};

const char sampleVersions[] = "Addr\tver\tEnabled\tTested\n"
                              "UKI\t9.6.43\t1111111100000000\t1111111100000000\n"
                              "5\t5.0\t0000000000001111\t0000000000001111";

// The older named-value form of the settings, which the settings parser does not understand.
const char sampleSettings[] = "AddrUki\t0\nNumUki\t1\nRS485_addr\t1\nRS485_baud\t9600\n"
                              "RisoM3s1\t40\nRisoM3s2\t20\nRisoLoc\t200\nTimeMto\tAUTO\n"
                              "TimeM3s\t0\nUrelay\t13\nUminus\t135\nCapSopt\t0\n"
                              "ModeDef\twmAuto\nBright\t500\nContrast\t30\nTmost\tOFF\n"
                              "Lang\tRU\nGroupSearch\tOFF\nIout\tOFF\nRequ\tOFF\n"
                              "Filter\t10\nRiso4-20\t200";

const char sampleDump[]
        = "Item\tDate\tTime\tType\tValue-1\tValue-2\tValue-3\tValue-4\tValue-5\tValue-6\tValue-"
          "7\tValue-8\r\n"
          "1\t05.04.20\t08:00:05\tET_EVENT_IMS_POW_ON\t6\t9\t6\t35\t0\t0\t0\t0\r\n"
          "2\t05.04.20\t08:10:00\tET_GENERAL_RESISTANCE\t101\t112\t999\t227\t23\t204\t181\t0\r\n"
          "3\t05.04.20\t08:20:00\tET_GENERAL_RESISTANCE\t98\t110\t990\t226\t24\t202\t180\t12\r\n"
          "4\t05.04.20\t09:02:13\tET_EVENT_RES_REDUCTION\t35\t40\t260\t25\t201\t0\t0\t0\r\n"
          "5\t05.04.20\t09:02:40\tET_SODC_PARAM\t125\t1260\t0\t0\t0\t0\t0\t0\r\n"
          "6\t05.04.20\t09:03:51\tET_FEED_PARAM\t177\t0\t667\t5\t16\t0\t05.04.20\t09:02:55\r\n"
          "7\t05.04.20\t09:05:02\tET_EVENT_IMS_CT_"
          "FAULT\t1111111100000000\t1111111100000000\t1111111100000000\t1111111100000000\r\n"
          "8\t05.04.20\t09:06:10\tET_EVENT_IMS_CTLOC_"
          "FAULT\t0000000000001111\t0000000000001111\t0000000000001111\t0000000000001111\r\n"
          "9\t05.04.20\t09:07:00\tET_EVENT_IMS_LOC_LOST\t5\t0\t0\t0\t0\t0\t0\t0\r\n"
          "10\t05.04.20\t09:15:00\tET_EVENT_RES_REDUCTION_CRIT\t15\t18\t140\t24\t202\t0\t0\t0\r\n"
          "11\t05.04.20\t09:16:30\tET_EVENT_DISBALANCE_VOLTAGE\t80\t95\t420\t61\t166\t0\t0\t0\r\n"
          "12\t05.04.20\t09:30:00\tET_GENERAL_RESISTANCE\t240\t250\t999\t228\t110\t118\t0\t123\r\n"
          "13\t05.04.20\t10:00:00\tET_EVENT_UMINIMUM_VOLTAGE\t200\t240\t999\t80\t148\t0\t0\t0\r\n"
          "14\t05.04.20\t10:40:00\tET_EVENT_IMS_POW_OFF\t0\t0\t0\t0\t0\t0\t0\t0\r\n"
          "15\t05.04.20\t10:41:12\tET_EVENT_IMS_POW_ON\t6\t9\t6\t43\t0\t0\t0\t0\r\n"
          "16\t05.04.20\t11:11:00\tET_GENERAL_RESISTANCE\t310\t320\t999\t229\t112\t117\t0\t123\r\n"
          "17\t05.04.20\t11:18:30\tET_FEED_PARAM\t190\t0\t540\t5\t3\t0\t05.04.20\t11:18:10\r\n"
          "18\t05.04.20\t11:23:00\tET_GENERAL_RESISTANCE\t310\t320\t999\t229\t112\t117\t0\t123\r\n"
          "19\t05.04.20\t11:30:30\tET_FEED_PARAM\t190\t0\t540\t5\t15\t0\t05.04.20\t11:30:10\r\n"
          "20\t05.04.20\t11:35:00\tET_GENERAL_RESISTANCE\t310\t320\t999\t229\t112\t117\t0\t123\r\n"
          "21\t05.04.20\t11:42:30\tET_FEED_PARAM\t190\t0\t540\t5\t11\t0\t05.04.20\t11:42:10\r\n"
          "22\t05.04.20\t11:47:00\tET_GENERAL_RESISTANCE\t310\t320\t999\t229\t112\t117\t0\t123\r\n"
          "23\t05.04.20\t11:54:30\tET_FEED_PARAM\t190\t0\t540\t5\t7\t0\t05.04.20\t11:54:10\r\n"
          "24\t05.04.20\t11:59:00\tET_GENERAL_RESISTANCE\t310\t320\t999\t229\t112\t117\t0\t123\r\n"
          "25\t05.04.20\t12:06:30\tET_FEED_PARAM\t190\t0\t540\t5\t3\t0\t05.04.20\t12:06:10\r\n"
          "26\t05.04.20\t12:11:00\tET_GENERAL_RESISTANCE\t310\t320\t999\t229\t112\t117\t0\t123\r\n"
          "27\t05.04.20\t12:18:30\tET_FEED_PARAM\t190\t0\t540\t5\t15\t0\t05.04.20\t12:18:10\r\n"
          "28\t05.04.20\t12:23:00\tET_GENERAL_RESISTANCE\t310\t320\t999\t229\t112\t117\t0\t123\r\n"
          "29\t05.04.20\t12:30:30\tET_FEED_PARAM\t190\t0\t540\t5\t11\t0\t05.04.20\t12:30:10\r\n"
          "30\t05.04.20\t12:35:00\tET_GENERAL_RESISTANCE\t310\t320\t999\t229\t112\t117\t0\t123\r\n"
          "31\t05.04.20\t12:42:30\tET_FEED_PARAM\t190\t0\t540\t5\t7\t0\t05.04.20\t12:42:10\r\n"
          "32\t05.04.20\t12:47:00\tET_GENERAL_RESISTANCE\t310\t320\t999\t229\t112\t117\t0\t123\r\n"
          "33\t05.04.20\t12:54:30\tET_FEED_PARAM\t190\t0\t540\t5\t3\t0\t05.04.20\t12:54:10\r\n"
          "34\t05.04.20\t12:59:00\tET_GENERAL_RESISTANCE\t310\t320\t999\t229\t112\t117\t0\t123\r\n"
          "35\t05.04.20\t13:06:30\tET_FEED_PARAM\t190\t0\t540\t5\t15\t0\t05.04.20\t13:06:10\r\n";

QString sampleCustomChannels()
{
    QStringList lines{QStringLiteral("address\tchannel\tr_loc\tlower\tupper")};
    for (int address : {0, 5}) {
        for (int channel = 1; channel <= 16; ++channel)
            lines.append(QStringLiteral("%1\t%2\tOFF").arg(address).arg(channel));
    }
    return lines.join(QLatin1String("\r\n")) + QLatin1String("\r\n");
}

QString statisticsLine(const QString &command)
{
    const QStringList parts = command.split(QLatin1Char('_'));
    if (parts.size() != 6)
        return {};
    const uint level = parts.at(2).toUInt();
    const uint address = parts.at(3).toUInt();
    const uint channel = parts.at(4).toUInt();
    const uint index = parts.at(5).toUInt();
    if (level != 1)
        return {};

    const CannedRow *row = nullptr;
    if (address == 0 && index < 16)
        row = channel == 0 ? &monitorChannel0[index] : &monitorOtherChannels[index];
    else if (address == 5 && index < 80)
        row = &locator5[index];
    if (!row)
        return {};
    return QStringLiteral("%1\t%2\t%3")
            .arg(row->value1, 0, 'g', -1)
            .arg(row->value2, 0, 'g', -1)
            .arg(channel * 3 + row->value3, 0, 'g', -1);
}

} // namespace

QString cannedReply(const QString &command)
{
    if (command == QLatin1String("cfg"))
        return QLatin1String(sampleVersions);
    if (command == QLatin1String("sets"))
        return QLatin1String(sampleSettings);
    if (command == QLatin1String("dump"))
        return QLatin1String(sampleDump);
    if (command == QLatin1String("get_cust"))
        return sampleCustomChannels();
    if (command.startsWith(QLatin1String("set_cust")))
        return QStringLiteral("OK\r\n");
    if (command.startsWith(QLatin1String("srch_stats_")))
        return statisticsLine(command);
    return {};
}
