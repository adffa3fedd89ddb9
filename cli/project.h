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

// The fields of a project file, each named here once, and the files a
// project run writes into its working directory.
namespace ProjectField {
inline const QString Device = QStringLiteral("device");
inline const QString WorkDir = QStringLiteral("workdir");
inline const QString Shared = QStringLiteral("shared");
inline const QString Cores = QStringLiteral("cores");
// Of a core entry that is an object.
inline const QString Record = QStringLiteral("record");
inline const QString QuadBias = QStringLiteral("quadBias");
// Every field: the file's, then a core entry's.
inline const QStringList All = {Device, WorkDir, Shared, Cores, Record, QuadBias};
// The working directory of a file that names none: the file's own folder.
inline const QString DefaultWorkDir = QStringLiteral(".");
} // namespace ProjectField

// Every source the generated cores need, one path a line, in compile order.
inline const QString SourcesFile = QStringLiteral("cores.f");
// The templates of the generated cores, to paste into one module.
inline const QString TemplatesFile = QStringLiteral("cores_template.v");

// A project file: the project's memory, as the design environment's project
// is. A JSON object with
//
//   "device"   the identifier of the device every core works on;
//   "workdir"  the working directory, relative to the file's folder (default:
//              that folder); each core's files go to <workdir>/<file>/temp/cpri,
//              and cores.f and cores_template.v to <workdir>;
//   "shared"   (optional) the values the cores share: the bias of a quad,
//              {"Q0_BIAS": 9, "Q1_BIAS": 11}, each 0 to 15;
//   "cores"    the cores in the order they were added, each
//              - the path of a record file (relative to the file's folder),
//              - a record itself, or
//              - {"record": a path or a record, "quadBias": N}: a core whose
//                record claims its quad's bias ("ifChangedAllOfBias" true)
//                and the bias, 0 to 15, its dialog published for the quad.
//
//   {"device": "DVC-1-C2I1", "workdir": "out", "shared": {},
//    "cores": [{"record": "a.json", "quadBias": 9}, "b.json", {...a record...}]}
//
// Cores that claim one quad's bias, and the shared value of that quad, must
// agree. `cpri-host dialog --project` writes an accepted core back: its
// record where the project names it (the record file, or inline), and its
// bias decision as the entry's "quadBias" (left out when the record does not
// claim the bias), which also becomes the bias of every other claim of that
// quad and of the quad's shared value: the dialog changes the whole quad's.
class Project
{
public:
    struct Core
    {
        QString label;      // "core 2"
        QString source;     // its record file as the project names it, or the project file
        QString recordPath; // the record file, absolute; empty for a record inside the project
        QMap<QString, QVariant> record;
        std::optional<int> quadBias;
        QString instance;      // "file:module"
        QStringList resources; // lane key, PLL key, reference routing name
        bool placed = false;
        QString kind; // of the refusal
        QJsonObject refusal;
        QStringList files;
        QString synthesisMessage;

        QJsonObject report() const;
    };

    // False with error set when the file or one of its records is unusable.
    bool read(PluginHost &host, const QString &path, QString &error);
    // A registry holding the device, working directory and shared values only.
    void prepare() const;
    // Places a core after those before it; false with the conflict that refuses it.
    bool place(PluginHost &host, Core &core, IPSERDESIP::Conflict &conflict);
    // The label of the placed core with this instance name, or what else holds it.
    QString heldBy(const QString &instance) const;
    // A registry for the dialog of core number index (from 0): the project's
    // shared values and its other cores placed, and the bias the core claims
    // unless its quad's bias is held already.
    void openCore(PluginHost &host, int index);
    // Writes core number index back as its dialog accepted it: the record,
    // and when it claims its quad's bias, the bias the dialog published to
    // the registry. False with error set when a file cannot be written.
    bool writeBack(int index, const QMap<QString, QVariant> &record, QString &error);

    DEV::DeviceArg device;
    QString workDir;
    QMap<QString, int> shared;
    QVector<Core> cores;

private:
    bool readShared(const QJsonObject &object, QString &error);
    bool readCore(PluginHost &host, const QJsonValue &entry, int number, QString &error);
    bool readRecord(const QJsonValue &value, Core &core, QString &error);
    bool checkBias(const Core &core, QString &error) const;
    bool claimBias(const Core &core, IPSERDESIP::Conflict &conflict);
    bool writeRecord(const Core &core, const QMap<QString, QVariant> &record, QJsonValue &written,
                     QString &error) const;
    QString conflictingName(const Core &core, const Core &earlier, QString &kind) const;

    QString m_path;
    QJsonObject m_file;
};

} // namespace CpriHost
