#pragma once

#include <dev/devicearg.h>
#include <ipserdes/conflict.h>

#include <QJsonObject>
#include <QJsonValue>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <optional>

namespace CpriHost {

class PluginHost;

// A project file: the device, the working directory (relative to the
// file's folder, default that folder), the values the cores share and the
// cores in the order they were added:
//
//   {"device": "DVC-1-C2I1", "workdir": "out", "shared": {"Q0_BIAS": 9},
//    "cores": ["a.json", {...a record...}, {"record": "c.json", "quadBias": 11}]}
//
// A core's "quadBias" is the bias its dialog published for its quad when
// the core's record applies its bias to the whole quad ("ifChangedAllOfBias").
class Project
{
public:
    struct Core
    {
        QString label;  // "core 2"
        QString source; // its record file, as the project names it
        QMap<QString, QVariant> record;
        std::optional<int> quadBias;
        QString instance;      // "file:module"
        QStringList resources; // lane key, PLL key, reference routing name
        bool placed = false;
        QString kind;          // of the refusal
        QJsonObject refusal;
        QStringList files;

        QJsonObject report() const;
    };

    // False with error set when the file or one of its records is unusable.
    // The cores' records are checked in a registry that holds the project's
    // device and shared values only.
    bool read(PluginHost &host, const QString &path, QString &error);
    // A registry holding the device, working directory and shared values only.
    void prepare() const;
    // Places a core after those before it; false with the conflict that refuses it.
    bool place(PluginHost &host, Core &core, IPSERDESIP::Conflict &conflict);
    // The label of the placed core with this instance name, or what else holds it.
    QString heldBy(const QString &instance) const;

    DEV::DeviceArg device;
    QString workDir;
    QMap<QString, int> shared;
    QVector<Core> cores;

private:
    bool readCore(PluginHost &host, const QString &projectPath, const QJsonValue &entry,
                  int number, QString &error);
    bool claimBias(const Core &core, IPSERDESIP::Conflict &conflict);
};

} // namespace CpriHost
