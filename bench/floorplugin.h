#pragma once

#include <QObject>

// The smallest Qt plug-in: the floor a plug-in's cold load is measured against.
class FloorPlugin : public QObject
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "Bench.FloorPlugin/1.0")
};
