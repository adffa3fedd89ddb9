// Generation end to end: the protocol object's generate and checkResources.

#include "testrecords.h"

#include <config/configkeys.h>
#include <plugin/cpri.h>

#include <ipserdes/message.h>
#include <ipserdes/serdes.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using IPCPRI::ConfigMap;
namespace Key = IPCPRI::Config::Key;

namespace {

ConfigMap typicalRecord()
{
    return TestRecords::typical();
}

QStringList fileLines(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {QStringLiteral("<missing>")};
    QString text = QString::fromUtf8(file.readAll());
    if (text.endsWith(QLatin1Char('\n')))
        text.chop(1);
    return text.split(QLatin1Char('\n'));
}

struct Run
{
    bool ok = false;
    QStringList settings;
    QStringList options;
    QString message;
};

} // namespace

class TestDriver : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void writesThreeFilesAndHandsBackTheLists();
    void biasLineComesAfterTheRegistrysLines();
    void unknownChannelAndSourceStillGenerate();
    void emptyRecordIsRefused();
    void failuresKeepWhatWasDone_data();
    void failuresKeepWhatWasDone();
    void synthesisNeedsTheCoreSources();
    void resourceRecord_data();
    void resourceRecord();
    void emptyResourceRecord();

private:
    Run generate(IPCPRI::cpri &protocol, const ConfigMap &record, bool synthesis = false);

    QTemporaryDir m_work;
    std::unique_ptr<IPCPRI::cpri> m_protocol;
};

void TestDriver::init()
{
    IPSERDESIP::serdes::instance()->reset();
    QVERIFY(m_work.isValid());
    IPSERDESIP::serdes::instance()->setWorkingDir(m_work.path());
    QDir(m_work.path()).removeRecursively();
    QDir().mkpath(m_work.path());
    m_protocol = std::make_unique<IPCPRI::cpri>(QStringLiteral(CPRI_PACKAGE_DIR));
    QVERIFY(m_protocol->loadDescriptor());
}

Run TestDriver::generate(IPCPRI::cpri &protocol, const ConfigMap &record, bool synthesis)
{
    Run run;
    QStringList projectFiles;
    run.ok = protocol.generate(record, run.settings, projectFiles, run.options, run.message,
                               synthesis);
    return run;
}

void TestDriver::writesThreeFilesAndHandsBackTheLists()
{
    const ConfigMap record = typicalRecord();
    const Run run = generate(*m_protocol, record);
    QVERIFY(run.ok);
    QCOMPARE(m_protocol->configuration(), record);
    QCOMPARE(m_protocol->device().id(), QStringLiteral("DVA-1-C2I1"));

    QCOMPARE(run.settings.size(), 24 + 2);
    QCOMPARE(run.settings.first(), QStringLiteral("q0_ln1_pll_sel qpll0"));
    QCOMPARE(run.settings.at(24), QStringLiteral("q0_refclk0_freq 122.88"));
    QCOMPARE(run.settings.at(25), QStringLiteral("q0_global_reset_en true"));
    QCOMPARE(run.options.first(), QStringLiteral("-cpri_topprotocol_module_type cpri"));

    const QString dir = m_work.path() + QStringLiteral("/ip1/temp/cpri/");
    QCOMPARE(fileLines(dir + QStringLiteral("top_define.vh")),
             QStringList{QStringLiteral("`define module_name cpri_top")});
    QCOMPARE(fileLines(dir + QStringLiteral("cpri_defines.vh")).first(),
             QStringLiteral("`define LANE_NUM 1"));
    QCOMPARE(fileLines(dir + QStringLiteral("cpri.ini")), run.settings);
}

void TestDriver::biasLineComesAfterTheRegistrysLines()
{
    IPSERDESIP::serdes::instance()->setData(QStringLiteral("Q1_BIAS"), 12);
    ConfigMap record = typicalRecord();
    record.insert(Key::ChannelSelection, QStringLiteral("Q1 Lane2"));
    record.insert(Key::ChangedAllOfBias, true);
    QStringList settings{QStringLiteral("caller line")};
    QStringList projectFiles, options;
    QString message;
    QVERIFY(m_protocol->generate(record, settings, projectFiles, options, message, false));
    QCOMPARE(settings.first(), QStringLiteral("caller line"));
    QCOMPARE(settings.at(settings.size() - 2), QStringLiteral("q1_global_reset_en true"));
    QCOMPARE(settings.last(), QStringLiteral("q1_rx_eq_bias 12"));
    QCOMPARE(fileLines(m_work.path() + QStringLiteral("/ip1/temp/cpri/cpri.ini")), settings);
}

void TestDriver::unknownChannelAndSourceStillGenerate()
{
    ConfigMap record = typicalRecord();
    record.insert(Key::ChannelSelection, QStringLiteral("Q2 Lane0"));
    record.insert(Key::RefClkSource, QStringLiteral("REFCLK9"));
    const Run run = generate(*m_protocol, record);
    QVERIFY(run.ok);
    QVERIFY(run.settings.isEmpty());
    const QStringList defines =
        fileLines(m_work.path() + QStringLiteral("/ip1/temp/cpri/cpri_defines.vh"));
    QVERIFY(!defines.first().startsWith(QStringLiteral("`define LANE_NUM")));
}

void TestDriver::emptyRecordIsRefused()
{
    const Run run = generate(*m_protocol, ConfigMap());
    QVERIFY(!run.ok);
    QVERIFY(run.settings.isEmpty());
    QVERIFY(run.options.isEmpty());
    QVERIFY(QDir(m_work.path()).isEmpty());
}

void TestDriver::failuresKeepWhatWasDone_data()
{
    QTest::addColumn<QString>("blocker"); // a folder in the way of this file
    QTest::addColumn<QStringList>("written");
    QTest::newRow("output folder") << QStringLiteral("..") << QStringList();
    QTest::newRow("top_define.vh") << QStringLiteral("top_define.vh") << QStringList();
    QTest::newRow("cpri_defines.vh") << QStringLiteral("cpri_defines.vh")
                                     << QStringList{QStringLiteral("top_define.vh")};
    QTest::newRow("cpri.ini") << QStringLiteral("cpri.ini")
                              << QStringList{QStringLiteral("top_define.vh"),
                                             QStringLiteral("cpri_defines.vh")};
}

void TestDriver::failuresKeepWhatWasDone()
{
    QFETCH(QString, blocker);
    QFETCH(QStringList, written);
    const QString dir = m_work.path() + QStringLiteral("/ip1/temp/cpri");
    if (blocker == QLatin1String("..")) {
        // A file where the output folder's parent should be.
        QDir().mkpath(m_work.path() + QStringLiteral("/ip1"));
        QFile file(m_work.path() + QStringLiteral("/ip1/temp"));
        QVERIFY(file.open(QIODevice::WriteOnly));
    } else {
        QVERIFY(QDir().mkpath(dir + QLatin1Char('/') + blocker));
    }
    const Run run = generate(*m_protocol, typicalRecord(), true);
    QVERIFY(!run.ok);
    QCOMPARE(run.settings.size(), 26);
    QCOMPARE(run.options.size(), 15);
    QVERIFY(run.message.isEmpty()); // synthesis never ran
    for (const QString &name : {QStringLiteral("top_define.vh"), QStringLiteral("cpri_defines.vh"),
                                QStringLiteral("cpri.ini")}) {
        if (name == blocker)
            continue;
        QCOMPARE(QFileInfo(dir + QLatin1Char('/') + name).isFile(), written.contains(name));
    }
}

void TestDriver::synthesisNeedsTheCoreSources()
{
    Run run = generate(*m_protocol, typicalRecord(), true);
    QVERIFY2(run.ok, qPrintable(run.message));
    QVERIFY(run.message.contains(QStringLiteral("cpri_top.v")));

    QTemporaryDir bare;
    QFile::copy(QStringLiteral(CPRI_PACKAGE_DIR "/cpri.ipspec"), bare.path() + QStringLiteral("/cpri.ipspec"));
    IPCPRI::cpri withoutData(bare.path());
    QVERIFY(withoutData.loadDescriptor());
    run = generate(withoutData, typicalRecord(), true);
    QVERIFY(!run.ok);
    QVERIFY(run.message.contains(QStringLiteral("cpri_core_encryption.v")));
    QVERIFY(QFileInfo::exists(m_work.path() + QStringLiteral("/ip1/temp/cpri/cpri.ini")));
}

void TestDriver::resourceRecord_data()
{
    QTest::addColumn<QString>("lane");
    QTest::addColumn<QString>("pll");
    QTest::addColumn<QStringList>("lanes");
    QTest::addColumn<QStringList>("plls");
    QTest::newRow("CPLL") << "Q1 Lane3" << "CPLL" << QStringList{QStringLiteral("Q1_LANE3")}
                          << QStringList{QStringLiteral("Q1_CPLL3")};
    QTest::newRow("QPLL1") << "Q0 Lane2" << "QPLL1" << QStringList{QStringLiteral("Q0_LANE2")}
                           << QStringList{QStringLiteral("Q0_QPLL1")};
    QTest::newRow("lower-case PLL") << "Q0 Lane0" << "qpll0"
                                    << QStringList{QStringLiteral("Q0_LANE0")} << QStringList();
    QTest::newRow("unknown lane") << "Lane0" << "QPLL0" << QStringList() << QStringList();
}

void TestDriver::resourceRecord()
{
    QFETCH(QString, lane);
    QFETCH(QString, pll);
    QFETCH(QStringList, lanes);
    QFETCH(QStringList, plls);
    ConfigMap record = typicalRecord();
    record.insert(Key::File, QStringLiteral("cpri_0"));
    record.insert(Key::Module, QStringLiteral("cpri_top_0"));
    record.insert(Key::ChannelSelection, lane);
    record.insert(Key::PllSelection, pll);
    record.insert(Key::LineRate, QStringLiteral("12.16512Gbps"));
    const ConfigMap before = m_protocol->configuration();
    std::unique_ptr<IPSERDESIP::Message> m(m_protocol->checkResources(record));
    QCOMPARE(m->coreName, QStringLiteral("CPRI"));
    QCOMPARE(m->instanceName, QStringLiteral("cpri_0:cpri_top_0"));
    QCOMPARE(m->fileValue, QStringLiteral("cpri_0"));
    QCOMPARE(m->moduleValue, QStringLiteral("cpri_top_0"));
    QCOMPARE(m->laneList, lanes);
    QCOMPARE(m->pllList, plls);
    QCOMPARE(m->refClockList, QStringList{QStringLiteral("Q0_REFCLK0")});
    QCOMPARE(m->refFreqList, QStringList{QStringLiteral("122.880")});
    QCOMPARE(m->lineRates, QStringList{QStringLiteral("12.16512")});
    QCOMPARE(m->auxList1, QStringList{QStringLiteral("0")});
    QCOMPARE(m->auxList2, QStringList{QStringLiteral("0")});
    QCOMPARE(m_protocol->configuration(), before);
}

void TestDriver::emptyResourceRecord()
{
    std::unique_ptr<IPSERDESIP::Message> m(m_protocol->checkResources(ConfigMap()));
    QCOMPARE(m->instanceName, QStringLiteral(":"));
    QVERIFY(m->laneList.isEmpty() && m->pllList.isEmpty());
    QCOMPARE(m->refClockList, QStringList{QString()});
    QCOMPARE(m->refFreqList, QStringList{QString()});
    QCOMPARE(m->lineRates, QStringList{QString()});
}

QTEST_MAIN(TestDriver)
#include "tst_driver.moc"
