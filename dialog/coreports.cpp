#include "coreports.h"

#include <QStringList>

#include <algorithm>

namespace IPCPRI {

namespace {

namespace Key = Config::Key;
using DataPath = FigureChoices::DataPath;

struct ClassPath
{
    const QString &key;
    DataPath path;
};

// The speed classes in the order the top level tests their defines.
const QVector<ClassPath> &classPaths()
{
    static const QVector<ClassPath> rows = {
        {Key::SpeedSel3072, DataPath::Narrow3072},   {Key::SpeedSel6144, DataPath::Narrow6144},
        {Key::SpeedSel98304, DataPath::Narrow98304}, {Key::SpeedSel101376, DataPath::Wide},
        {Key::SpeedSel1216512, DataPath::Wide},
    };
    return rows;
}

struct FlagChoice
{
    const QString &key;
    bool FigureChoices::*choice;
};

const QVector<FlagChoice> &flagChoices()
{
    static const QVector<FlagChoice> rows = {
        {Key::RealTimeVendor, &FigureChoices::realTimeVendor},
        {Key::LoopbackPorts, &FigureChoices::loopbackPorts},
        {Key::DrpPorts, &FigureChoices::drpPorts},
        {Key::DifferentialSwingPorts, &FigureChoices::differentialSwingPorts},
        {Key::FfePorts, &FigureChoices::ffePorts},
        {Key::EqualizationPorts, &FigureChoices::equalizationPorts},
        {Key::BiasPorts, &FigureChoices::biasPorts},
        {Key::PrbsGeneratorPorts, &FigureChoices::prbsGeneratorPorts},
        {Key::PrbsCheckerPorts, &FigureChoices::prbsCheckerPorts},
    };
    return rows;
}

// The number of bits of a name's range "[h:0]", which starts at open (every
// range of the symbol ends at bit 0).
int rangeWidth(const QString &name, int open)
{
    return name.midRef(open + 1, name.indexOf(QLatin1Char(':'), open) - open - 1).toInt() + 1;
}

} // namespace

FigureChoices figureChoices(const ConfigMap &record)
{
    FigureChoices choices;
    const auto set = std::find_if(classPaths().cbegin(), classPaths().cend(),
                                  [&](const ClassPath &c) { return record.value(c.key).toBool(); });
    if (set != classPaths().cend())
        choices.dataPath = set->path;
    choices.mii = record.value(Key::Mii).toBool();
    choices.gmii = !choices.mii && record.value(Key::Gmii).toBool();
    for (const FlagChoice &flag : flagChoices())
        choices.*flag.choice = record.value(flag.key).toBool();
    return choices;
}

CorePort corePort(const Utils::PinFigure &pin)
{
    const int range = pin.name.indexOf(QLatin1Char('['));
    CorePort port;
    port.name = pin.name.left(range);
    port.direction = pin.direction == 1 ? CorePort::Output : CorePort::Input;
    if (pin.isBus)
        port.width = rangeWidth(pin.name, range);
    return port;
}

QVector<CorePort> corePorts(const ConfigMap &record)
{
    QVector<CorePort> ports;
    for (const Utils::PinFigure &pin : portFigure(figureChoices(record)))
        ports << corePort(pin);
    return ports;
}

} // namespace IPCPRI
