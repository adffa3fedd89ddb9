#pragma once

#include <utils/pinfigure.h>

#include <QList>
#include <QStringList>
#include <QVector>

#include <functional>

namespace IPCPRI {

// What decides the ports of the core's symbol.
struct FigureChoices
{
    enum class DataPath { None, Narrow3072, Narrow6144, Narrow98304, Wide };

    DataPath dataPath = DataPath::None;
    bool realTimeVendor = false;
    bool mii = false;
    bool gmii = false;
    bool loopbackPorts = false;
    bool drpPorts = false;
    bool differentialSwingPorts = false;
    bool ffePorts = false;
    bool equalizationPorts = false;
    bool biasPorts = false;
    bool prbsGeneratorPorts = false;
    bool prbsCheckerPorts = false;
};

// One group of the symbol's ports: its title and, for a set of choices,
// its port names with their bit ranges (none when the choices leave the
// group out).
struct PortGroup
{
    QString title;
    std::function<QStringList(const FigureChoices &)> ports;
};

// The groups in drawing order.
const QVector<PortGroup> &portGroups();

// The symbol's ports in drawing order: those of every group.
QList<Utils::PinFigure> portFigure(const FigureChoices &choices);

// A port by its name: "_i" inputs on the left, "_o" outputs on the right,
// a bit range makes it a bus.
Utils::PinFigure pinFigure(const QString &name);

} // namespace IPCPRI
