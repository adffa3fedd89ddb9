#include "configkeys.h"

#include <algorithm>

namespace IPCPRI {
namespace Config {

namespace {

QVector<KeySpec> buildRecordKeys()
{
    using T = ValueType;
    const QVariant off(false);
    const QVariant on(true);
    return {
        {Key::TargetDevice, T::Text, QString()},
        {Key::Type, T::Text, QString()},
        {Key::Version, T::Text, FormatVersion},
        {Key::SynthesisTool, T::Text, QString()},
        {Key::Language, T::Int, 0},
        {Key::File, T::Text, QString()},
        {Key::Module, T::Text, QString()},
        {Key::SpeedSel3072, T::Bool, off},
        {Key::SpeedSel6144, T::Bool, off},
        {Key::SpeedSel98304, T::Bool, off},
        {Key::SpeedSel101376, T::Bool, off},
        {Key::SpeedSel1216512, T::Bool, off},
        {Key::Rate06144, T::Bool, off},
        {Key::Rate12288, T::Bool, off},
        {Key::Rate24576, T::Bool, off},
        {Key::Rate3072, T::Bool, off},
        {Key::Rate49152, T::Bool, off},
        {Key::Rate6144, T::Bool, off},
        {Key::Rate98304, T::Bool, off},
        {Key::Rate811008, T::Bool, off},
        {Key::Rate101376, T::Bool, off},
        {Key::Rate1216512, T::Bool, off},
        {Key::ConfigClkPeriod, T::Text, QStringLiteral("50")},
        {Key::Mii, T::Bool, on},
        {Key::Gmii, T::Bool, off},
        {Key::ProtocolVersion1, T::Bool, on},
        {Key::ProtocolVersion2, T::Bool, off},
        {Key::ScramblerSeed, T::Text, QStringLiteral("00000000")},
        {Key::HdlcRate, T::Text, QStringLiteral("2")},
        {Key::HdlcByte, T::Text, QStringLiteral("0")},
        {Key::HdlcMask, T::Text, QStringLiteral("0000")},
        {Key::EthernetPointer, T::Text, QStringLiteral("14")},
        {Key::FixedConfigEnable, T::Bool, off},
        {Key::RealTimeVendor, T::Bool, off},
        {Key::Master, T::Bool, off},
        {Key::Slave, T::Bool, off},
        {Key::ChannelSelection, T::Text, QString()},
        {Key::LineRate, T::Text, QStringLiteral("0.00000Gbps")},
        {Key::RefClkSource, T::Text, QStringLiteral("Q0 REFCLK0")},
        {Key::RefClkFrequency, T::Text, QStringLiteral("122.880")},
        {Key::PllSelection, T::Text, QStringLiteral("QPLL0")},
        {Key::LoopbackMode, T::Text, loopbackModes().first()},
        {Key::Mode64b66b, T::Text, SerDesPlacement},
        {Key::HighestSpeedIndex, T::Int, -1},
        {Key::SpeedEnablesRecord, T::Text, QStringLiteral("000000000000")},
        {Key::DifferentialSwing, T::Text, QStringLiteral("900mV")},
        {Key::FfeMode, T::Text, AutoMode},
        {Key::FfeCm, T::Int, 0},
        {Key::FfeC1, T::Int, 0},
        {Key::FfeC0, T::Text, QStringLiteral("40")},
        {Key::SdThreshold, T::Text, QStringLiteral("100mV")},
        {Key::EqualizationMode, T::Text, AutoMode},
        {Key::Att, T::Int, 7},
        {Key::Boost, T::Int, 9},
        {Key::LoopbackPorts, T::Bool, off},
        {Key::DrpPorts, T::Bool, off},
        {Key::PrbsGeneratorPorts, T::Bool, off},
        {Key::DifferentialSwingPorts, T::Bool, off},
        {Key::FfePorts, T::Bool, off},
        {Key::PrbsCheckerPorts, T::Bool, off},
        {Key::EqualizationPorts, T::Bool, off},
        {Key::BiasPorts, T::Bool, off},
        {Key::ChangedAllOfBias, T::Bool, off},
    };
}

QStringList millivolts(int first, int last, int step)
{
    QStringList items;
    for (int mv = first; mv <= last; mv += step)
        items << QStringLiteral("%1mV").arg(mv);
    return items;
}

} // namespace

const QVector<KeySpec> &recordKeys()
{
    static const QVector<KeySpec> keys = buildRecordKeys();
    return keys;
}

const KeySpec *keySpec(const QString &key)
{
    const QVector<KeySpec> &keys = recordKeys();
    const auto it = std::find_if(keys.cbegin(), keys.cend(),
                                 [&](const KeySpec &row) { return row.key == key; });
    return it == keys.cend() ? nullptr : &*it;
}

QVariant initialValue(const QString &key)
{
    const KeySpec *row = keySpec(key);
    Q_ASSERT(row);
    return row ? row->initial : QVariant();
}

const QStringList &loopbackModes()
{
    static const QStringList modes = {QStringLiteral("OFF"), QStringLiteral("LB_NES"),
                                      QStringLiteral("LB_FES"), QStringLiteral("LB_ENC")};
    return modes;
}

const QStringList &differentialSwings()
{
    static const QStringList swings = millivolts(180, 900, 48);
    return swings;
}

const QStringList &signalDetectThresholds()
{
    static const QStringList thresholds = millivolts(25, 200, 25);
    return thresholds;
}

const QVector<QString> &optionalPortKeys()
{
    static const QVector<QString> keys = {
        Key::LoopbackPorts,
        Key::DrpPorts,
        Key::FfePorts,
        Key::PrbsGeneratorPorts,
        Key::DifferentialSwingPorts,
        Key::PrbsCheckerPorts,
        Key::EqualizationPorts,
        Key::BiasPorts,
    };
    return keys;
}

bool anyOptionalPort(const ConfigMap &record)
{
    const QVector<QString> &keys = optionalPortKeys();
    return std::any_of(keys.cbegin(), keys.cend(),
                       [&](const QString &key) { return record.value(key).toBool(); });
}

} // namespace Config
} // namespace IPCPRI

// The texts the header names, defined once.
const QString IPCPRI::Config::Key::TargetDevice = QStringLiteral("target_device");
const QString IPCPRI::Config::Key::Type = QStringLiteral("type");
const QString IPCPRI::Config::Key::Version = QStringLiteral("version");
const QString IPCPRI::Config::Key::SynthesisTool = QStringLiteral("Synthesis_tool");
const QString IPCPRI::Config::Key::Language = QStringLiteral("LANG");
const QString IPCPRI::Config::Key::File = QStringLiteral("file");
const QString IPCPRI::Config::Key::Module = QStringLiteral("module");
const QString IPCPRI::Config::Key::SpeedSel3072 = QStringLiteral("3.072G_and_Under");
const QString IPCPRI::Config::Key::SpeedSel6144 = QStringLiteral("6.144G_and_Under");
const QString IPCPRI::Config::Key::SpeedSel98304 = QStringLiteral("9.8304G_and_Under");
const QString IPCPRI::Config::Key::SpeedSel101376 = QStringLiteral("10.1376G_and_Under");
const QString IPCPRI::Config::Key::SpeedSel1216512 = QStringLiteral("12.16512G_and_Under");
const QString IPCPRI::Config::Key::Rate06144 = QStringLiteral("0.6144Gbps");
const QString IPCPRI::Config::Key::Rate12288 = QStringLiteral("1.2288Gbps");
const QString IPCPRI::Config::Key::Rate24576 = QStringLiteral("2.4576Gbps");
const QString IPCPRI::Config::Key::Rate3072 = QStringLiteral("3.072Gbps");
const QString IPCPRI::Config::Key::Rate49152 = QStringLiteral("4.9152Gbps");
const QString IPCPRI::Config::Key::Rate6144 = QStringLiteral("6.144Gbps");
const QString IPCPRI::Config::Key::Rate98304 = QStringLiteral("9.8304Gbps");
const QString IPCPRI::Config::Key::Rate811008 = QStringLiteral("8.11008Gbps");
const QString IPCPRI::Config::Key::Rate101376 = QStringLiteral("10.1376Gbps");
const QString IPCPRI::Config::Key::Rate1216512 = QStringLiteral("12.16512Gbps");
const QString IPCPRI::Config::Key::ConfigClkPeriod = QStringLiteral("Config_Clk_Period");
const QString IPCPRI::Config::Key::Mii = QStringLiteral("MII");
const QString IPCPRI::Config::Key::Gmii = QStringLiteral("GMII");
const QString IPCPRI::Config::Key::ProtocolVersion1 = QStringLiteral("Initial_Protocol_Version1");
const QString IPCPRI::Config::Key::ProtocolVersion2 = QStringLiteral("Initial_Protocol_Version2");
const QString IPCPRI::Config::Key::ScramblerSeed = QStringLiteral("Initial_Scrambler_Seed");
const QString IPCPRI::Config::Key::HdlcRate = QStringLiteral("Initial_HDLC_Rate");
const QString IPCPRI::Config::Key::HdlcByte = QStringLiteral("Initial_HDLC_Byte");
const QString IPCPRI::Config::Key::HdlcMask = QStringLiteral("Initial_HDLC_Mask");
const QString IPCPRI::Config::Key::EthernetPointer = QStringLiteral("Initial_Ethernet_Pointer");
const QString IPCPRI::Config::Key::FixedConfigEnable = QStringLiteral("Fixed_Config_Enable");
const QString IPCPRI::Config::Key::RealTimeVendor = QStringLiteral("Real_Time_Vendor");
const QString IPCPRI::Config::Key::Master = QStringLiteral("Master");
const QString IPCPRI::Config::Key::Slave = QStringLiteral("Slave");
const QString IPCPRI::Config::Key::ChannelSelection = QStringLiteral("Channel_Selection");
const QString IPCPRI::Config::Key::LineRate = QStringLiteral("Line_Rate");
const QString IPCPRI::Config::Key::RefClkSource = QStringLiteral("Reference_CLK_Source");
const QString IPCPRI::Config::Key::RefClkFrequency = QStringLiteral("Reference_CLK_Frequency");
const QString IPCPRI::Config::Key::PllSelection = QStringLiteral("PLL_Selection");
const QString IPCPRI::Config::Key::LoopbackMode = QStringLiteral("Loopback_Mode");
const QString IPCPRI::Config::Key::Mode64b66b = QStringLiteral("64B_66B_Mode");
const QString IPCPRI::Config::Key::HighestSpeedIndex = QStringLiteral("highest_SpeedIndex");
const QString IPCPRI::Config::Key::SpeedEnablesRecord = QStringLiteral("speedEnables_Record");
const QString IPCPRI::Config::Key::DifferentialSwing = QStringLiteral("DIFFERENTIAL_SWING");
const QString IPCPRI::Config::Key::FfeMode = QStringLiteral("FFEMODE");
const QString IPCPRI::Config::Key::FfeCm = QStringLiteral("FFE_CM");
const QString IPCPRI::Config::Key::FfeC1 = QStringLiteral("FFE_C1");
const QString IPCPRI::Config::Key::FfeC0 = QStringLiteral("FFE_C0");
const QString IPCPRI::Config::Key::SdThreshold = QStringLiteral("SD_THRESHOLD");
const QString IPCPRI::Config::Key::EqualizationMode = QStringLiteral("Equalization_Mode");
const QString IPCPRI::Config::Key::Att = QStringLiteral("ATT");
const QString IPCPRI::Config::Key::Boost = QStringLiteral("BOOST");
const QString IPCPRI::Config::Key::LoopbackPorts = QStringLiteral("Loopback_Ports");
const QString IPCPRI::Config::Key::DrpPorts = QStringLiteral("DRP_Ports");
const QString IPCPRI::Config::Key::PrbsGeneratorPorts =
    QStringLiteral("PRBS_Pattern_Generator_Ports");
const QString IPCPRI::Config::Key::DifferentialSwingPorts =
    QStringLiteral("Differential_Swing_Ports");
const QString IPCPRI::Config::Key::FfePorts = QStringLiteral("FFE_Ports");
const QString IPCPRI::Config::Key::PrbsCheckerPorts = QStringLiteral("PRBS_Pattern_Checker_Ports");
const QString IPCPRI::Config::Key::EqualizationPorts = QStringLiteral("Equalization_Ports");
const QString IPCPRI::Config::Key::BiasPorts = QStringLiteral("BIAS_Ports");
const QString IPCPRI::Config::Key::ChangedAllOfBias = QStringLiteral("ifChangedAllOfBias");
const QString IPCPRI::Config::FormatVersion = QStringLiteral("1.0");
const QString IPCPRI::Config::AutoMode = QStringLiteral("Auto");
const QString IPCPRI::Config::ManualMode = QStringLiteral("Manual");
const QString IPCPRI::Config::SerDesPlacement = QStringLiteral("SerDes");
const QString IPCPRI::Config::FabricPlacement = QStringLiteral("Fabric");
