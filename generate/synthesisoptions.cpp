#include "synthesisoptions.h"

#include "generationnames.h"
#include "../serdes/lanesettings.h"
#include "../serdes/resourcenames.h"

#include <ipserdes/serdes.h>

#include <QRegExp>

namespace IPCPRI {
namespace Generate {

namespace {

namespace Key = Config::Key;

struct Option
{
    const QString &key;
    QString pattern;
};

const QString ProtocolTypeOption = QStringLiteral("-%1protocol_module_type %2");
const QString ChannelOption = QStringLiteral("-%1%2 true");
const QString AnyPortOptions[] = {QStringLiteral("-%1OptionalPortsConfiguration %2"),
                                  QStringLiteral("-%1EnableDRP %2")};
const QString DrpPortsOption = QStringLiteral("-%1DRPPorts %2");

// Options present only when their flag is set.
const QVector<Option> &presentWhenSet()
{
    static const QVector<Option> rows = {
        {Key::SpeedSel3072, QStringLiteral("-%1SpeedSelection 3.072GandUnder")},
        {Key::SpeedSel6144, QStringLiteral("-%1SpeedSelection 6.144GandUnder")},
        {Key::SpeedSel98304, QStringLiteral("-%1SpeedSelection 9.8304GandUnder")},
        {Key::SpeedSel101376, QStringLiteral("-%1SpeedSelection 10.1376GandUnder")},
        {Key::SpeedSel1216512, QStringLiteral("-%1SpeedSelection 12.16512GandUnder")},
        {Key::Mii, QStringLiteral("-%1EthernetSelection MII")},
        {Key::Gmii, QStringLiteral("-%1EthernetSelection GMII")},
    };
    return rows;
}

// Options always present, with "true" or "false".
const QVector<Option> &trueOrFalse()
{
    static const QVector<Option> rows = {
        {Key::RealTimeVendor, QStringLiteral("-%1RealTimeVendor %2")},
        {Key::LoopbackPorts, QStringLiteral("-%1LoopbackPort %2")},
        {Key::DifferentialSwingPorts, QStringLiteral("-%1DifferentialSwingPorts %2")},
        {Key::FfePorts, QStringLiteral("-%1FFEPorts %2")},
        {Key::EqualizationPorts, QStringLiteral("-%1EqualizationPorts %2")},
        {Key::BiasPorts, QStringLiteral("-%1BiasPorts %2")},
        {Key::PrbsGeneratorPorts, QStringLiteral("-%1PRBSPatternGeneratorPorts %2")},
        {Key::PrbsCheckerPorts, QStringLiteral("-%1PRBSPatternCheckerPorts %2")},
    };
    return rows;
}

QString boolText(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

} // namespace

QStringList synthesisOptions(const ConfigMap &record)
{
    static const QRegExp whiteSpace(QStringLiteral("\\s"));
    const QString module = record.value(Key::Module).toString();
    const QString channel = record.value(Key::ChannelSelection).toString().remove(whiteSpace);
    QStringList lines;
    lines << ProtocolTypeOption.arg(module, CoreTypeName) << ChannelOption.arg(module, channel);
    for (const Option &option : presentWhenSet()) {
        if (record.value(option.key).toBool())
            lines << option.pattern.arg(module);
    }
    for (const Option &option : trueOrFalse())
        lines << option.pattern.arg(module, boolText(record.value(option.key).toBool()));
    const QString anyPort = boolText(Config::anyOptionalPort(record));
    for (const QString &pattern : AnyPortOptions)
        lines << pattern.arg(module, anyPort);
    lines << DrpPortsOption.arg(module, boolText(record.value(Key::DrpPorts).toBool()));
    return lines;
}

QStringList settingLines(const ConfigMap &record, const QString &partName)
{
    QStringList lines;
    if (const Serdes::Lane *lane =
            Serdes::laneByDisplayName(record.value(Key::ChannelSelection).toString()))
        Serdes::appendLaneSettings(lines, lane->prefix, lane->quadPrefix,
                                   Serdes::laneInputFromRecord(record, partName));
    return lines + referenceClockLines(record);
}

QStringList referenceClockLines(const ConfigMap &record)
{
    const std::optional<QString> line = Serdes::frequencyLine(
        record.value(Key::RefClkSource).toString(), record.value(Key::RefClkFrequency).toString());
    return line ? QStringList{*line} : QStringList{};
}

QStringList quadBiasLines(const ConfigMap &record)
{
    if (!record.value(Key::ChangedAllOfBias, false).toBool())
        return {};
    IPSERDESIP::serdes *registry = IPSERDESIP::serdes::instance();
    return Serdes::biasLines(record.value(Key::ChannelSelection).toString(),
                             [registry](const Serdes::QuadBias &bias) {
                                 return registry->getData(bias.registryKey).toInt();
                             });
}

} // namespace Generate
} // namespace IPCPRI
