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
