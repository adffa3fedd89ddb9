// guidegen: writes the core's user guide from the project's own tables,
// so that the guide says what the code does.
//
// guidegen DESCRIPTOR MEANINGS PORT_MEANINGS EXAMPLE_RECORD EXAMPLE_PROJECT HOST_PROGRAM OUTPUT
//   DESCRIPTOR       the package's "cpri.ipspec"
//   MEANINGS         "keymeanings.txt": each record key and what it means
//   PORT_MEANINGS    "portmeanings.txt": each port's clock domain and meaning
//   EXAMPLE_RECORD   a stored record whose generated lines the guide shows
//   EXAMPLE_PROJECT  a project file, which the walkthrough runs in a copy
//   HOST_PROGRAM     cpri-host, whose usage text the guide quotes and which
//                    runs the walkthrough
//   OUTPUT           the HTML file to write

#include "clocksguide.h"
#include "guidehtml.h"
#include "portsguide.h"
#include "projectguide.h"

#include <config/configkeys.h>
#include <config/descriptorkeys.h>
#include <config/linerates.h>
#include <config/speedrules.h>
#include <core/idecore.h>
#include <dev/devicedb.h>
#include <dialog/recordcheck.h>
#include <generate/definefiles.h>
#include <generate/generationnames.h>
#include <generate/synthesisoptions.h>
#include <ipcore/ipcorefunctions.h>
#include <recordfile.h>
#include <serdes/lanesettings.h>
#include <serdes/resourcenames.h>

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSaveFile>
#include <QTextStream>

#include <algorithm>

using namespace IPCPRI;
using namespace Guide;
namespace Key = Config::Key;

namespace {

QString rateText(int index)
{
    return Config::lineRateText(Config::rateRows().at(index).gbps);
}

QStringList rateTexts(const QVector<int> &indices)
{
    QStringList texts;
    for (int i : indices)
        texts << rateText(i);
    return texts;
}

QString describe(const QMap<QString, QVariant> &info)
{
    return QStringLiteral("<h1>%1</h1>\n<p>%2</p>\n<p>Version %3, identifier %4, in %5.</p>\n"
                          "<p>Devices: %6.</p>\n")
        .arg(esc(info.value(Descriptor::Label).toString()),
             esc(info.value(Descriptor::Summary).toString()),
             esc(info.value(Descriptor::Version).toString()),
             code(info.value(Descriptor::Id).toString()),
             esc(info.value(Descriptor::Category).toStringList().join(QStringLiteral(" / "))),
             codes(info.value(Descriptor::SupportedDevices).toStringList()));
}

QString rates()
{
    QString rows;
    const QVector<int> offered = offeredRates();
    for (int i = 0; i < Config::rateRows().size(); ++i) {
        const Config::RateRow &r = Config::rateRows().at(i);
        if (!r.reserved()) {
            rows += row({code(Config::lineRateText(r.gbps)), code(r.key),
                         offered.contains(i) ? QStringLiteral("yes")
                                             : QStringLiteral("no: its box stays disabled")});
        }
    }
    QString classes;
    for (const Config::SpeedClass &c : Config::speedClasses()) {
        QVector<int> offered = c.enable;
        std::sort(offered.begin(), offered.end(), [](int a, int b) {
            return Config::rateRows().at(a).gbps < Config::rateRows().at(b).gbps;
        });
        classes +=
            row({code(c.key), codes(rateTexts(offered)),
                 c.enableOnTopGrade.isEmpty() ? QString() : codes(rateTexts(c.enableOnTopGrade))});
    }
    return QStringLiteral("<h2>Line rates and speed classes</h2>\n<p>The line rates, each "
                          "with a check box whose record key is beside it:</p>\n")
           + table({QStringLiteral("Line rate"), QStringLiteral("Record key"),
                    QStringLiteral("Offered by a speed class")},
                   rows)
           + QStringLiteral("<p>A speed class bounds the rates. Choosing one offers its rates and "
                            "withdraws the faster ones; the fastest rates need a device of "
                            "grade %1.</p>\n")
                 .arg(code(Config::TopGrade))
           + table({QStringLiteral("Speed class"), QStringLiteral("Offers"),
                    QStringLiteral("Also offers on grade ") + Config::TopGrade},
                   classes);
}

// The values a key takes where the dialog offers them as a list: every
// lane, and the reference sources of every device family.
QString range(const Config::KeySpec &key)
{
    if (key.type == Config::ValueType::Bool)
        return QStringLiteral("true or false");
    QStringList lanes;
    for (const Serdes::Lane &lane : Serdes::lanes())
        lanes << lane.displayName;
    if (key.key != Key::RefClkSource)
        return codes(RecordCheck::offered(key.key, lanes, QString()));
    QStringList sources;
    for (const Serdes::RefClock &clock : Serdes::refClocks())
        sources << clock.displayName;
    return codes(sources);
}

// The meaning of every record key, from lines "key meaning" ('#' starts a
// comment); empty, with the reason in error, when a key of the record has
// no meaning or a line names no key of the record.
QMap<QString, QString> readMeanings(const QString &path, QString &error)
{
    QMap<QString, QString> meanings;
    const QStringList lines = dataLines(path, error);
    if (!error.isEmpty())
        return {};
    for (const QString &line : lines)
        meanings.insert(line.section(QLatin1Char(' '), 0, 0), line.section(QLatin1Char(' '), 1));
    QStringList keys;
    for (const Config::KeySpec &key : Config::recordKeys())
        keys << key.key;
    for (const QString &key : keys) {
        if (meanings.value(key).isEmpty())
            error = QStringLiteral("%1 gives no meaning of \"%2\"").arg(path, key);
    }
    for (auto it = meanings.cbegin(); it != meanings.cend(); ++it) {
        if (!keys.contains(it.key()))
            error = QStringLiteral("%1 names \"%2\", which is no key of the record")
                        .arg(path, it.key());
    }
    return error.isEmpty() ? meanings : QMap<QString, QString>();
}

QString keys(const QMap<QString, QString> &meanings)
{
    const QStringList types = {QStringLiteral("text"), QStringLiteral("bool"),
                               QStringLiteral("int")};
    QString rows;
    for (const Config::KeySpec &key : Config::recordKeys()) {
        rows += row({code(key.key), esc(meanings.value(key.key)), types.at(int(key.type)),
                     range(key), code(key.initial.toString())});
    }
    return QStringLiteral("<h2>Configuration record</h2>\n<p>The dialog stores a core as a record "
                          "of these keys, in this order (format version %1):</p>\n")
               .arg(code(Config::FormatVersion))
           + table({QStringLiteral("Key"), QStringLiteral("Meaning"), QStringLiteral("Type"),
                    QStringLiteral("Values"), QStringLiteral("New core")},
                   rows);
}

QString generation(const QMap<QString, QVariant> &record, const QString &exampleName)
{
    const QString partName = Core::IdeCore::deviceDataBase()
                                 ->findDevice(record.value(Key::TargetDevice).toString())
                                 .device();
    const QStringList settings = Generate::settingLines(record, partName);
    const QString folder = Generate::coreOutputDir(CoreFolder);
    QString html = QStringLiteral("<h2>Generated files</h2>\n<p>Generation writes a core's files "
                                  "to %1. The lines below are those of the example record "
                                  "%2.</p>\n")
                       .arg(code(folder), code(exampleName));
    html += QStringLiteral("<h3>%1</h3>\n<p>The name of the generated top module.</p>\n")
                .arg(esc(Generate::TopDefineFile))
            + pre(Generate::topDefines(record));
    html += QStringLiteral("<h3>%1</h3>\n<p>The lane, optional ports, line rates, timing, "
                           "Ethernet, protocol, HDLC, vendor-specific, role and PLL choices.</p>\n")
                .arg(esc(Generate::CoreDefineFile))
            + pre(Generate::coreDefines(record));
    html += QStringLiteral("<h3>%1</h3>\n<p>The transceiver setting lines, each a setting name "
                           "and a value: the lane's lines and the reference clock's frequency. "
                           "The host may adjust them for its global reset, and with %2 set the "
                           "quad's bias lines follow.</p>\n")
                .arg(esc(Generate::SettingsFile), code(Key::ChangedAllOfBias))
            + pre(settings);
    html += QStringLiteral("<h3>Synthesis options</h3>\n<p>Handed to the host with the "
                           "settings; the synthesis step reads the core's sources %1 with the "
                           "two define files.</p>\n")
                .arg(codes(Generate::CoreSources))
            + pre(Generate::synthesisOptions(record));
    html += QStringLiteral("<h3>%1</h3>\n<p>Written by the dialog's Calculate button: the "
                           "transceiver registers the host's generator computes from the "
                           "setting lines.</p>\n")
                .arg(esc(Generate::RegisterFile));
    return html;
}

QString commands(const QString &hostProgram, const QString &exampleName)
{
    QProcess host;
    host.start(hostProgram, {QStringLiteral("--help")});
    host.waitForFinished(30000);
    const QString usage = QString::fromLocal8Bit(host.readAllStandardOutput())
                              .trimmed()
                              .replace(hostProgram, QStringLiteral("cpri-host"));
    if (host.exitCode() != 0 || usage.isEmpty())
        return QString();
    const QStringList examples = {
        QStringLiteral("cpri-host info"),
        QStringLiteral("cpri-host generate %1 --workdir work --synthesize").arg(exampleName),
        QStringLiteral("cpri-host resources %1").arg(exampleName),
        QStringLiteral("cpri-host dialog --device DVA-1-C2I1 --out my_core.json"),
        QStringLiteral("cpri-host guide"),
    };
    return QStringLiteral("<h2>Command-line host</h2>\n<p><code>cpri-host</code> runs the core "
                          "as the IP-core generator does. Its usage:</p>\n")
           + pre({usage}) + QStringLiteral("<p>Examples:</p>\n") + pre(examples);
}

const char Style[] =
    "body{font-family:sans-serif;max-width:60em;margin:2em auto;padding:0 1em;line-height:1.4}"
    "table{border-collapse:collapse;margin:.5em 0}"
    "th,td{border:1px solid #bbb;padding:.2em .5em;text-align:left;vertical-align:top}"
    "th{background:#eee}pre{background:#f6f6f6;padding:.5em;overflow-x:auto}";

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const QStringList args = QCoreApplication::arguments();
    if (args.size() != 8) {
        QTextStream(stderr) << "usage: guidegen DESCRIPTOR MEANINGS PORT_MEANINGS EXAMPLE_RECORD "
                               "EXAMPLE_PROJECT HOST_PROGRAM OUTPUT\n";
        return 2;
    }
    const QMap<QString, QVariant> info = IPCore::processIPInfoSpec(args.at(1));
    QMap<QString, QVariant> record;
    QString error;
    if (info.isEmpty() || !CpriHost::RecordFile::read(args.at(4), record, error)) {
        QTextStream(stderr) << "guidegen: cannot read " << (info.isEmpty() ? args.at(1) : error)
                            << '\n';
        return 1;
    }
    const QMap<QString, QString> meanings = readMeanings(args.at(2), error);
    const QMap<QString, PortMeaning> portMeanings =
        meanings.isEmpty() ? QMap<QString, PortMeaning>() : readPortMeanings(args.at(3), error);
    if (portMeanings.isEmpty()) {
        QTextStream(stderr) << "guidegen: " << error << '\n';
        return 1;
    }
    const QString exampleName = args.at(4).section(QLatin1Char('/'), -2);
    const QString commandsPart = commands(args.at(6), exampleName);
    if (commandsPart.isEmpty()) {
        QTextStream(stderr) << "guidegen: no usage text from " << args.at(6) << '\n';
        return 1;
    }
    const QString projectPart =
        projectSection({QFileInfo(args.at(6)).absoluteFilePath(), args.at(5),
                        QFileInfo(args.at(1)).absolutePath(), record},
                       error);
    if (projectPart.isEmpty()) {
        QTextStream(stderr) << "guidegen: the walkthrough: " << error << '\n';
        return 1;
    }
    const QString html =
        QStringLiteral("<!DOCTYPE html>\n<html lang=\"en\"><head>"
                       "<meta charset=\"utf-8\"><title>%1 user guide</title>"
                       "<style>%2</style></head><body>\n")
            .arg(esc(info.value(Descriptor::Label).toString()), QString::fromLatin1(Style))
        + describe(info) + rates() + keys(meanings) + portsSection(portMeanings) + clocksSection()
        + projectPart + generation(record, exampleName) + commandsPart
        + QStringLiteral("</body></html>\n");
    QSaveFile out(args.at(7));
    if (!out.open(QIODevice::WriteOnly) || out.write(html.toUtf8()) < 0 || !out.commit()) {
        QTextStream(stderr) << "guidegen: cannot write " << args.at(7) << '\n';
        return 1;
    }
    return 0;
}
