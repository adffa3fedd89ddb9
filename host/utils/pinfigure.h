#pragma once

#include <QString>
#include <Qt>

namespace Utils {

// One port of a core's symbol: inputs (direction 0) are drawn on the left,
// outputs (direction 1) on the right; a bus port carries its bit range in
// its name and is drawn as a bus.
struct PinFigure
{
    PinFigure() = default;
    PinFigure(const QString &name, int direction, bool isBus, Qt::AlignmentFlag alignment)
        : name(name), direction(direction), isBus(isBus), alignment(alignment)
    {}

    bool operator==(const PinFigure &o) const
    {
        return name == o.name && direction == o.direction && isBus == o.isBus
               && alignment == o.alignment;
    }

    QString name;
    int direction = 0;
    bool isBus = false;
    Qt::AlignmentFlag alignment = Qt::AlignLeft;
};

} // namespace Utils
