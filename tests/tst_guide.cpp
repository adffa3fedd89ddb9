// The user guide beside the plug-in, Help, `cpri-host guide` and synthesis by Yosys.

#include "dialogfixture.h"

#include <ipserdes/baseprotocol.h>
#include <pluginhost.h>


static const QString Guide = QFileInfo(CPRI_PACKAGE_DIR "/doc/cpri_user_guide.html").absoluteFilePath();

// Runs cpri-host with a PATH; standard output and error as one text, and the exit code.
static QPair<QString, int> host(const QStringList &arguments, const QString &path = qgetenv("PATH"))
{
    QProcess p;
    p.setEnvironment(QProcess::systemEnvironment() << "PATH=" + path); // the last PATH counts
    p.start(CPRI_HOST_PATH, arguments);
    p.waitForFinished(-1);
    return {QString::fromUtf8(p.readAllStandardOutput() + p.readAllStandardError()), p.exitCode()};
}

// A package folder with plug-in and descriptor, no guide, and a top source that does not parse.
static QString brokenPackage(const QTemporaryDir &dir)
{
    QDir(dir.path()).mkpath("data");
    for (const char *name : {"libcpri.so", "cpri.ipspec", "data/cpri_core_encryption.v"})
        QFile::copy(QString(CPRI_PACKAGE_DIR "/") + name, dir.filePath(name));
    QFile top(dir.filePath("data/cpri_top.v"));
    return top.open(QIODevice::WriteOnly) && top.write("module broken (;\n") ? dir.filePath("libcpri.so") : "";
}

class TestGuide : public QObject
{
    Q_OBJECT
    QList<QUrl> opened;

public slots:
    void open(const QUrl &url) { opened << url; }

private slots:
    void guideHoldsTheTablesAndIsNamedByTheHost()
    {
        QFile file(Guide);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QString html = QString::fromUtf8(file.readAll());
        QStringList facts = split("0.61440Gbps|12.16512Gbps|8.11008Gbps|3.072G_and_Under|C2/I1|tx_clk_i|iq_tx_data_i[15:0]|"
                                  "aux_tx_slot_num_o[6:0]|up10g_rt_tx_req_o[7:0]|mii_tx_clk_i|gmii_tx_data_i[7:0]|loopback_en_i|"
                                  "user_drp_clk_o|user_drp_addr_i[23:0]|rx_prbs_err_cnt_o[7:0]|top_define.vh|cpri.ini|q0_ln1_|"
                                  "resources RECORD.json|guide                         the path of the core's user guide", '|');
        for (const IPCPRI::Config::KeySpec &key : IPCPRI::Config::recordKeys())
            facts << "<tr><td><code>" + key.key.toHtmlEscaped() + "</code>";
        for (const QString &fact : facts)
            QVERIFY2(html.contains(fact), qPrintable(fact));
        for (const QString &row : split("SD_THRESHOLD 25mV|64B_66B_Mode Fabric|Loopback_Mode LB_ENC|MII true or false|ATT 0 to 10", '|'))
            QVERIFY2(html.section("<code>" + row.section(' ', 0, 0) + "</code>", 1).section("</tr>", 0, 0).contains(row.section(' ', 1)), qPrintable(row));
        QCOMPARE(host({"guide"}), qMakePair(Guide + "\n", 0));
        QTemporaryDir dir;
        QCOMPARE(host({"guide", "--plugin", brokenPackage(dir)}), qMakePair("cpri-host: the user guide " + dir.path() + "/doc/cpri_user_guide.html is missing\n", 1));
    }

    void helpButtonOpensTheGuide()
    {
        QDesktopServices::setUrlHandler("file", this, "open");
        CpriHost::PluginHost plugin(CPRI_PLUGIN_PATH);
        QVERIFY(plugin.load());
        Session s; // its dialog is built into this program, with no guide beside it
        s.user.setDialogHandler([](QDialog *d) { act(d, "helpButton"); d->reject(); });
        plugin.protocol()->createConfig("cpri_0", s.device);
        QCOMPARE(opened, QList<QUrl>{QUrl::fromLocalFile(Guide)});
        s.act("helpButton");
        QCOMPARE(s.seen(), QStringList("Error: The help document " + QCoreApplication::applicationDirPath()
                                       + "/doc/cpri_user_guide.html was not found."));
        QCOMPARE(opened.size(), 1);
    }

    void synthesisRunsYosys()
    {
        QTemporaryDir work, package;
        const QStringList generate{"generate", CPRI_SOURCE_DIR "/examples/cpri_9g8304_q0lane1.json", "--synthesize", "--workdir", work.path()};
        const QPair<QString, int> done = host(generate);
        for (const char *line : {"\"synthesisMessage\": \"Synthesis of cpri (cpri_top) for DVA-1-C2I1 with Yosys:\\n",
                                 "\\nNumber of wires: ", "\\nNumber of wire bits: ", "\\nNumber of cells: "})
            QVERIFY2(done.second == 0 && done.first.contains(line), qPrintable(done.first));
        const QPair<QString, int> broken = host(generate + QStringList{"--plugin", brokenPackage(package)});
        QVERIFY2(broken.second == 1 && broken.first.contains(".v:1: ERROR: syntax error"), qPrintable(broken.first));
        QVERIFY(host(generate, "/nonexistent").first.contains("(no synthesis tool in this host)"));
    }
};

QTEST_MAIN(TestGuide)
#include "tst_guide.moc"
