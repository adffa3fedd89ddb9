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
        {Key::TargetDevice, T::Text, QString(), QStringLiteral("the device the core is made for")},
        {Key::Type, T::Text, QString(), QStringLiteral("the core's identifier")},
        {Key::Version, T::Text, FormatVersion, QStringLiteral("format version of the record")},
        {Key::SynthesisTool, T::Text, QString(),
         QStringLiteral("synthesis tool chosen in the dialog frame")},
        {Key::Language, T::Int, 0, QStringLiteral("HDL language index chosen in the dialog frame")},
        {Key::File, T::Text, QString(),
         QStringLiteral("output file name: the core's folder in the working directory")},
        {Key::Module, T::Text, QString(),
         QStringLiteral("Verilog module name of the generated top")},
        {Key::SpeedSel3072, T::Bool, off,
         QStringLiteral("speed class: offers the rates up to the key's rate")},
        {Key::SpeedSel6144, T::Bool, off,
         QStringLiteral("speed class: offers the rates up to the key's rate")},
        {Key::SpeedSel98304, T::Bool, off,
         QStringLiteral("speed class: offers the rates up to the key's rate")},
        {Key::SpeedSel101376, T::Bool, off,
         QStringLiteral("speed class: offers the rates up to the key's rate")},
        {Key::SpeedSel1216512, T::Bool, off,
         QStringLiteral("speed class: offers the rates up to the key's rate")},
        {Key::Rate06144, T::Bool, off, QStringLiteral("the line rate of the key is offered")},
        {Key::Rate12288, T::Bool, off, QStringLiteral("the line rate of the key is offered")},
        {Key::Rate24576, T::Bool, off, QStringLiteral("the line rate of the key is offered")},
        {Key::Rate3072, T::Bool, off, QStringLiteral("the line rate of the key is offered")},
        {Key::Rate49152, T::Bool, off, QStringLiteral("the line rate of the key is offered")},
        {Key::Rate6144, T::Bool, off, QStringLiteral("the line rate of the key is offered")},
        {Key::Rate98304, T::Bool, off, QStringLiteral("the line rate of the key is offered")},
        {Key::Rate811008, T::Bool, off, QStringLiteral("the line rate of the key is offered")},
        {Key::Rate101376, T::Bool, off, QStringLiteral("the line rate of the key is offered")},
        {Key::Rate1216512, T::Bool, off, QStringLiteral("the line rate of the key is offered")},
        {Key::ConfigClkPeriod, T::Text, QStringLiteral("50"),
         QStringLiteral("configuration clock in MHz, 1 to 150")},
        {Key::Mii, T::Bool, on, QStringLiteral("MII Ethernet interface")},
        {Key::Gmii, T::Bool, off, QStringLiteral("GMII Ethernet interface")},
        {Key::ProtocolVersion1, T::Bool, on, QStringLiteral("start-up protocol version 1")},
        {Key::ProtocolVersion2, T::Bool, off, QStringLiteral("start-up protocol version 2")},
        {Key::ScramblerSeed, T::Text, QStringLiteral("00000000"),
         QStringLiteral("start-up scrambler seed, hexadecimal 0 to 7FFFFFFF")},
        {Key::HdlcRate, T::Text, QStringLiteral("2"), QStringLiteral("start-up HDLC rate, 0 to 7")},
        {Key::HdlcByte, T::Text, QStringLiteral("0"),
         QStringLiteral("start-up HDLC byte, one hexadecimal digit")},
        {Key::HdlcMask, T::Text, QStringLiteral("0000"),
         QStringLiteral("start-up HDLC mask, four hexadecimal digits")},
        {Key::EthernetPointer, T::Text, QStringLiteral("14"),
         QStringLiteral("start-up Ethernet pointer, hexadecimal 14 to 3F")},
        {Key::FixedConfigEnable, T::Bool, off,
         QStringLiteral("fixed configuration: the start-up values stay")},
        {Key::RealTimeVendor, T::Bool, off,
         QStringLiteral("real-time vendor-specific data ports (fastest classes)")},
        {Key::Master, T::Bool, off, QStringLiteral("link master role")},
        {Key::Slave, T::Bool, off, QStringLiteral("link slave role")},
        {Key::ChannelSelection, T::Text, QString(),
         QStringLiteral("transceiver lane, \"Q0 Lane0\" to \"Q1 Lane3\"")},
        {Key::LineRate, T::Text, QStringLiteral("0.00000Gbps"),
         QStringLiteral("highest enabled line rate")},
        {Key::RefClkSource, T::Text, QStringLiteral("Q0 REFCLK0"),
         QStringLiteral("reference clock source of the lane")},
        {Key::RefClkFrequency, T::Text, QStringLiteral("122.880"),
         QStringLiteral("reference clock frequency in MHz, 50 to 500")},
        {Key::PllSelection, T::Text, QStringLiteral("QPLL0"),
         QStringLiteral("PLL of the lane: QPLL0, QPLL1 or CPLL")},
        {Key::LoopbackMode, T::Text, loopbackModes().first(),
         QStringLiteral("transceiver loopback")},
        {Key::Mode64b66b, T::Text, SerDesPlacement,
         QStringLiteral("where the 64B/66B coding runs")},
        {Key::HighestSpeedIndex, T::Int, -1,
         QStringLiteral("index of the highest enabled rate, -1 for none")},
        {Key::SpeedEnablesRecord, T::Text, QStringLiteral("000000000000"),
         QStringLiteral("enabled rates as twelve 0/1 flags, first rate rightmost")},
        {Key::DifferentialSwing, T::Text, QStringLiteral("900mV"),
         QStringLiteral("transmitter differential swing")},
        {Key::FfeMode, T::Text, AutoMode,
         QStringLiteral("transmitter FFE taps set automatically or by hand")},
        {Key::FfeCm, T::Int, 0, QStringLiteral("FFE pre-cursor tap, 0 to 19")},
        {Key::FfeC1, T::Int, 0, QStringLiteral("FFE post-cursor tap, 0 to 19")},
        {Key::FfeC0, T::Text, QStringLiteral("40"),
         QStringLiteral("FFE main tap: 40 less the other two, above 20")},
        {Key::SdThreshold, T::Text, QStringLiteral("100mV"),
         QStringLiteral("receiver signal-detect threshold")},
        {Key::EqualizationMode, T::Text, AutoMode,
         QStringLiteral("receiver equalizer set automatically or by hand")},
        {Key::Att, T::Int, 7, QStringLiteral("receiver equalizer attenuation, 0 to 10")},
        {Key::Boost, T::Int, 9, QStringLiteral("receiver equalizer boost, 0 to 15")},
        {Key::LoopbackPorts, T::Bool, off, QStringLiteral("optional loopback control ports")},
        {Key::DrpPorts, T::Bool, off, QStringLiteral("optional transceiver register (DRP) ports")},
        {Key::PrbsGeneratorPorts, T::Bool, off,
         QStringLiteral("optional PRBS pattern generator ports")},
        {Key::DifferentialSwingPorts, T::Bool, off,
         QStringLiteral("optional differential swing ports")},
        {Key::FfePorts, T::Bool, off, QStringLiteral("optional FFE tap ports")},
        {Key::PrbsCheckerPorts, T::Bool, off,
         QStringLiteral("optional PRBS pattern checker ports")},
        {Key::EqualizationPorts, T::Bool, off, QStringLiteral("optional receiver equalizer ports")},
        {Key::BiasPorts, T::Bool, off, QStringLiteral("optional quad bias ports")},
        {Key::ChangedAllOfBias, T::Bool, off,
         QStringLiteral("the quad's shared bias applies to every core of the quad")},
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
        Key::LoopbackPorts,      Key::DrpPorts,         Key::FfePorts,
        Key::PrbsGeneratorPorts, Key::DifferentialSwingPorts, Key::PrbsCheckerPorts,
        Key::EqualizationPorts,  Key::BiasPorts,
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
