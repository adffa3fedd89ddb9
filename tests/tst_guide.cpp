// The user guide beside the plug-in, its tables against the code, Help, `cpri-host guide`
// and synthesis by Yosys.

#include "dialogfixture.h"
#include "testsupport.h"

#include <config/speedrules.h>
#include <dialog/coreports.h>
#include <dialog/dialogtexts.h>
#include <dialog/fieldrules.h>
#include <ipserdes/baseprotocol.h>
#include <ipserdes/pllmodel_p.h>
#include <pluginhost.h>
#include <project.h>

static const QString Guide =
    QFileInfo(CPRI_PACKAGE_DIR "/doc/cpri_user_guide.html").absoluteFilePath();

// cpri-host's output and errors as one text, and its exit code.
static QPair<QString, int> host(const QStringList &arguments, const QStringList &environment = {})
{
    const TestSupport::Run run = TestSupport::runHost(arguments, environment);
    return {run.text(), run.exitCode};
}

// A package folder with plug-in and descriptor, no guide, and a top source that does not parse.
static QString brokenPackage(const QTemporaryDir &dir)
{
    QDir(dir.path()).mkpath("data");
    for (const char *name : {"libcpri.so", "cpri.ipspec", "data/cpri_core_encryption.v"})
        QFile::copy(QString(CPRI_PACKAGE_DIR "/") + name, dir.filePath(name));
    QFile top(dir.filePath("data/cpri_top.v"));
    return top.open(QIODevice::WriteOnly) && top.write("module broken (;\n")
               ? dir.filePath("libcpri.so")
               : "";
}

static QString guideText()
{
    return QString::fromUtf8(TestSupport::read(Guide));
}

// A table's rows as plain cell texts (tags dropped, line breaks as "|"); the table by its id,
// or every table.
static QList<QStringList> tableRows(const QString &html, const QString &id = QString())
{
    const QString tables =
        id.isEmpty() ? html
                     : html.section("<table id=\"" + id + "\">", 1).section("</table>", 0, 0);
    QList<QStringList> rows;
    QRegularExpressionMatchIterator r = QRegularExpression("<tr>(.*?)</tr>").globalMatch(tables);
    while (r.hasNext()) {
        QStringList cells;
        QRegularExpressionMatchIterator c =
            QRegularExpression("<t[dh]>(.*?)</t[dh]>").globalMatch(r.next().captured(1));
        while (c.hasNext())
            cells << QTextDocumentFragment::fromHtml(c.next().captured(1).replace("<br>", "|"))
                         .toPlainText();
        rows << cells;
    }
    return rows;
}

static QString number(double value)
{
    return QString::number(value, 'g', 10);
}

// The rates some speed class offers, slowest first.
static QVector<int> offeredRates()
{
    QVector<int> rates;
    for (const IPCPRI::Config::SpeedClass &c : IPCPRI::Config::speedClasses())
        for (int rate : c.enable + c.enableOnTopGrade)
            if (!rates.contains(rate))
                rates << rate;
    std::sort(rates.begin(), rates.end(), [](int a, int b) {
        return IPCPRI::Config::rateRows()[a].gbps < IPCPRI::Config::rateRows()[b].gbps;
    });
    return rates;
}

class TestGuide : public QObject
{
    Q_OBJECT
    QList<QUrl> opened;

public slots:
    void open(const QUrl &url) { opened << url; }

private slots:
    // Every key in the record's table, every command of the host's usage, the rates of the summary.
    void guideHoldsTheTablesAndIsNamedByTheHost()
    {
        const QString html = guideText();
        QStringList facts = split(
            "0.6144Gbps</code></td><td>no: its box stays disabled|12.16512Gbps|8.11008Gbps|3.072G_and_Under|C2/I1|top_define.vh|cpri.ini|q0_ln1_|"
            "resources RECORD.json|guide                         the path of the core's user guide",
            '|');
        for (const IPCPRI::Config::KeySpec &key : IPCPRI::Config::recordKeys())
            facts << "<tr><td><code>" + key.key.toHtmlEscaped() + "</code>";
        const QString usage =
            host({"--help"}).first.section("Commands:\n", 1).section("\n\n", 0, 0);
        for (const QString &line : usage.split('\n'))
            if (line.startsWith("  ") && line.at(2) != ' ')
                facts << line.toHtmlEscaped(); // the command's usage line
        QVERIFY(facts.size() > IPCPRI::Config::recordKeys().size() + 18); // nine commands at least
        for (const QString &fact : facts)
            QVERIFY2(html.contains(fact), qPrintable(fact));
        const QVector<int> rates = offeredRates();
        QVERIFY(html.contains(QString("(%1 to %2 Gbps line rates)")
                                  .arg(number(IPCPRI::Config::rateRows()[rates.first()].gbps),
                                       number(IPCPRI::Config::rateRows()[rates.last()].gbps))));
        for (
            const QString &row : split(
                "SD_THRESHOLD 25mV|64B_66B_Mode Fabric|Loopback_Mode LB_ENC|MII true or false|ATT 0 to 10",
                '|'))
            QVERIFY2(html.section("<code>" + row.section(' ', 0, 0) + "</code>", 1)
                         .section("</tr>", 0, 0)
                         .contains(row.section(' ', 1)),
                     qPrintable(row));
        QCOMPARE(host({"guide"}), qMakePair(Guide + "\n", 0));
        QTemporaryDir dir;
        QCOMPARE(host({"guide", "--plugin", brokenPackage(dir)}),
                 qMakePair("cpri-host: the user guide " + dir.path()
                               + "/doc/cpri_user_guide.html is missing\n",
                           1));
    }

    // One row per port a record can give, with its direction, its width under each speed class
    // (one width when all classes agree), a clock domain and a meaning.
    void portTablesFollowTheFigure()
    {
        using namespace IPCPRI;
        QMap<QString, QStringList> expected; // port -> direction, widths by class
        const QVector<Config::SpeedClass> &classes = Config::speedClasses();
        for (int c = 0; c < classes.size(); ++c)
            for (const Config::KeySpec &key : Config::recordKeys())
                for (const CorePort &port :
                     corePorts({{classes[c].key, true},
                                {key.key, key.type == Config::ValueType::Bool}})) {
                    QStringList &cells = expected[port.name];
                    cells = (QStringList{port.direction == CorePort::Input ? "input" : "output"}
                             << cells.mid(1))
                                .mid(0, c + 1);
                    cells << QString::number(port.width);
                }
        QMap<QString, QStringList> rows;
        for (const QStringList &row : tableRows(guideText()))
            if (row.size() >= 5 && (row[1] == "input" || row[1] == "output"))
                rows.insert(row[0], row);
        QCOMPARE(rows.keys(), expected.keys());
        for (auto it = expected.cbegin(); it != expected.cend(); ++it) {
            const QStringList row = rows.value(it.key()), widths = it->mid(1);
            const bool one = widths.count(widths.first()) == widths.size();
            QCOMPARE(row.mid(1, row.size() - 3), one ? it->mid(0, 2) : QStringList(*it));
            QVERIFY2(!row[row.size() - 2].isEmpty() && !row.last().isEmpty(), qPrintable(it.key()));
        }
        QCOMPARE(
            rows.value("iq_tx_data_i").join(' '),
            "iq_tx_data_i input 16 32 64 64 64 tx_clk_i IQ samples to send, lowest byte first");
        QCOMPARE(rows.value("mii_tx_clk_i").mid(1, 3).join(' '), "input 1 a clock");
    }

    // The user clock of each rate under each class: the known CPRI frequencies, blank where the
    // class does not offer the rate. The reference clocks that make each rate, by PLL kind,
    // against the reference host's PLL model, over the frequencies the guide says it tried.
    void clockTablesFollowThePllModel()
    {
        using namespace IPSERDESIP::Internal;
        const QString html = guideText();
        QStringList clocks;
        for (const QStringList &row : tableRows(html, "user-clocks"))
            clocks << row.join('|');
        QCOMPARE(
            clocks,
            split(
                "Line rate|Line coding|3.072G_and_Under (16 bits)|6.144G_and_Under (32 bits)|9.8304G_and_Under "
                "(64 bits)|10.1376G_and_Under (64 bits)|12.16512G_and_Under (64 bits);1.22880Gbps|8B/10B|61.44|"
                "30.72|15.36|15.36|15.36;2.45760Gbps|8B/10B|122.88|61.44|30.72|30.72|30.72;3.07200Gbps|8B/10B|"
                "153.6|76.8|38.4|38.4|38.4;4.91520Gbps|8B/10B||122.88|61.44|61.44|61.44;6.14400Gbps|8B/10B||153.6|"
                "76.8|76.8|76.8;8.11008Gbps|64B/66B||||122.88|122.88;9.83040Gbps|8B/10B|||122.88|122.88|122.88;"
                "10.13760Gbps|64B/66B||||153.6|153.6;12.16512Gbps|64B/66B|||||184.32"));
        const QStringList tried =
            html.section("<span id=\"tried-references\">", 1).section("</span>", 0, 0).split(", ");
        QVERIFY(tried.size() >= 10);
        for (const QString &mhz : tried)
            QVERIFY2(mhz.toDouble() >= IPCPRI::FieldRules::MinReferenceMHz
                         && mhz.toDouble() <= IPCPRI::FieldRules::MaxReferenceMHz,
                     qPrintable(mhz));
        const QList<QStringList> rows = tableRows(html, "pll-references");
        QStringList kinds{"Line rate"}, rates{"Line rate"};
        for (const PllType &type : pllTypes())
            kinds << type.name.toUpper();
        for (int rate : offeredRates())
            rates << IPCPRI::Config::lineRateText(IPCPRI::Config::rateRows()[rate].gbps);
        QCOMPARE(rows.value(0), kinds);
        QCOMPARE(rows.size(), rates.size());
        for (int r = 1; r < rows.size(); ++r) {
            QCOMPARE(rows[r][0], rates[r]);
            for (int k = 1; k < kinds.size(); ++k) {
                QMap<QString, QString> vcoOf; // reference -> VCO, as the cell says
                for (const QString &line : rows[r][k].split('|').filter(": ")) // "none" has no VCO
                    for (const QString &mhz :
                         line.section(": ", 1).chopped(4).split(", ", Qt::SkipEmptyParts))
                        vcoOf.insert(mhz, line.section(' ', 1, 1));
                QVERIFY(!vcoOf.isEmpty() || rows[r][k] == "none");
                const double gbps = IPCPRI::Config::withoutUnit(rates[r]).toDouble();
                for (const QString &mhz : tried) {
                    const std::optional<PllSetting> s =
                        findSetting(*pllType(kinds[k]), mhz.toDouble(), gbps);
                    QVERIFY2(vcoOf.value(mhz) == (s ? number(s->vcoGHz) : QString()),
                             qPrintable(rates[r] + ' ' + kinds[k] + ' ' + mhz));
                }
                QCOMPARE(vcoOf.size(),
                         int(std::count_if(tried.cbegin(), tried.cend(), [&](const QString &mhz) {
                             return vcoOf.contains(mhz);
                         })));
            }
        }
    }

    // The project section: its table names every field of a project file, and it quotes the
    // dialog's own messages. Run as written in a copy of the example project, every cpri-host
    // command and option it names is the host's, every shell line succeeds (the real tools
    // compile, lint and synthesise the design without a warning), and each quoted file holds
    // what the run wrote.
    void walkthroughRunsAsWritten()
    {
        using namespace IPCPRI::Texts;
        const QString html = guideText().section("<h2 id=\"project\">", 1).section("<h2", 0, 0);
        QStringList fields;
        for (const QStringList &row : tableRows(html, "project-fields").mid(1))
            fields << row.first();
        QCOMPARE(fields, CpriHost::ProjectField::All);
        for (const QString &text :
             {RefClockUnreachable, LineRateUnreachable, Succeed, BiasQuestion, NoAvailableLanes,
              EnableSpeed, SelectSpeedSelection, C0TooSmall})
            QVERIFY2(html.contains("<code>" + text.toHtmlEscaped() + "</code>"), qPrintable(text));
        const QString usage = host({"--help"}).first;
        int commands = 0;
        for (auto c = QRegularExpression("cpri-host (\\w+)([^<\n]*)").globalMatch(html);
             c.hasNext(); ++commands) {
            const QRegularExpressionMatch command = c.next();
            const QString block = usage.section("\n  " + command.captured(1) + ' ', 1)
                                      .section(QRegularExpression("\n  \\S"), 0, 0);
            QVERIFY2(!block.isEmpty(), qPrintable(command.captured(0)));
            for (auto o = QRegularExpression("--(\\w+)").globalMatch(command.captured(2));
                 o.hasNext();)
                QVERIFY2(block.contains("[--" + o.next().captured(1)),
                         qPrintable(command.captured(0)));
        }
        QVERIFY(commands >= 6);

        const auto unescaped = [](QString text) {
            return text.replace("&lt;", "<")
                .replace("&gt;", ">")
                .replace("&quot;", "\"")
                .replace("&amp;", "&");
        };
        const auto quotes =
            [&](const QString &pattern) { // the pattern's captures, each the last one unescaped
                QList<QStringList> found;
                for (auto m =
                         QRegularExpression(pattern, QRegularExpression::DotMatchesEverythingOption)
                             .globalMatch(html);
                     m.hasNext();) {
                    QStringList captured = m.next().capturedTexts().mid(1);
                    captured.last() = unescaped(captured.last());
                    found << captured;
                }
                return found;
            };
        QTemporaryDir dir;
        const QDir example(CPRI_SOURCE_DIR "/examples/project");
        for (const QString &name : example.entryList({"*.json"}))
            QVERIFY(QFile::copy(example.filePath(name), dir.filePath(name)));
        QFile board(dir.filePath("board.v"));
        QVERIFY(board.open(QIODevice::WriteOnly)
                && board.write(quotes("<pre id=\"board-v\">(.*?)</pre>").value(0).value(0).toUtf8()
                               + '\n')
                       > 0);
        board.close();
        QProcess shell;
        shell.setWorkingDirectory(dir.path());
        shell.setProcessChannelMode(QProcess::MergedChannels);
        shell.setEnvironment(QProcess::systemEnvironment()
                             << "PATH=" + QFileInfo(CPRI_HOST_PATH).path() + ':' + qgetenv("PATH"));
        const QList<QStringList> blocks = quotes("<pre class=\"shell\">(.*?)</pre>");
        QVERIFY(blocks.size() >= 3);
        for (const QStringList &block : blocks)
            for (const QString &line : block.first().split('\n')) {
                shell.start("sh", {"-c", line});
                const bool ran = shell.waitForFinished(-1) && shell.exitCode() == 0;
                const QString output = shell.readAll();
                QVERIFY2(ran && !output.contains("warning", Qt::CaseInsensitive),
                         qPrintable(line + '\n' + output));
            }
        const QList<QStringList> files = quotes("<pre data-file=\"([^\"]+)\">(.*?)</pre>");
        QVERIFY(files.size() >= 3);
        for (const QStringList &file : files) {
            QFile written(dir.filePath(file.first()));
            QVERIFY2(written.open(QIODevice::ReadOnly), qPrintable(file.first()));
            const QString text = QString::fromUtf8(written.readAll())
                                     .replace(dir.path(), "PROJECT")
                                     .replace(CPRI_PACKAGE_DIR, "PACKAGE");
            QVERIFY2(text.contains(file.last()),
                     qPrintable(file.join('\n') + "\nis not in\n" + text));
        }
    }

    void helpButtonOpensTheGuide()
    {
        QDesktopServices::setUrlHandler("file", this, "open");
        CpriHost::PluginHost plugin(CPRI_PLUGIN_PATH);
        QVERIFY(plugin.load());
        Session s; // its dialog is built into this program, with no guide beside it
        s.user.setDialogHandler([](QDialog *d) {
            act(d, "helpButton");
            d->reject();
        });
        plugin.protocol()->createConfig("cpri_0", s.device);
        QCOMPARE(opened, QList<QUrl>{QUrl::fromLocalFile(Guide)});
        s.act("helpButton");
        QCOMPARE(s.seen(),
                 QStringList("Error: The help document " + QCoreApplication::applicationDirPath()
                             + "/doc/cpri_user_guide.html was not found."));
        QCOMPARE(opened.size(), 1);
    }

    void synthesisRunsYosys()
    {
        QTemporaryDir work, package;
        const QStringList generate{"generate", CPRI_SOURCE_DIR "/examples/cpri_9g8304_q0lane1.json",
                                   "--synthesize", "--workdir", work.path()};
        const QPair<QString, int> done = host(generate);
        for (const char *line :
             {"\"synthesisMessage\": \"Synthesis of cpri (cpri_top) for DVA-1-C2I1 with Yosys:\\n",
              "\\nNumber of wires: ", "\\nNumber of wire bits: ", "\\nNumber of cells: "})
            QVERIFY2(done.second == 0 && done.first.contains(line), qPrintable(done.first));
        const QPair<QString, int> broken =
            host(generate + QStringList{"--plugin", brokenPackage(package)});
        QVERIFY2(broken.second == 1 && broken.first.contains(".v:1: ERROR: syntax error"),
                 qPrintable(broken.first));
        QVERIFY(host(generate, {"PATH=/nonexistent"})
                    .first.contains("(no synthesis tool in this host)"));
    }
};

QTEST_MAIN(TestGuide)
#include "tst_guide.moc"
