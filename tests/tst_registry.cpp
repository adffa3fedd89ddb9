// The reference host's resource registry, generator and file helpers.

#include <dev/devicedb.h>
#include <core/idecore.h>
#include <ipcore/ipcorefunctions.h>
#include <ipserdes/generator.h>
#include <ipserdes/message.h>
#include <ipserdes/serdes.h>
#include <ipserdes/serdesfunctions.h>

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using IPSERDESIP::serdes;

namespace {

serdes *reg()
{
    return serdes::instance();
}

QStringList clockedLane(const QString &pll, const QString &rate, const QString &freqLine)
{
    return {QStringLiteral("q0_ln0_pll_sel ") + pll, QStringLiteral("q0_ln0_tx_rate ") + rate,
            freqLine};
}

} // namespace

class TestRegistry : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void freeLanesFollowTheDeviceAndOtherCores();
    void qpllsProduceRatesOfTheirSetUp_data();
    void qpllsProduceRatesOfTheirSetUp();
    void referenceFrequencyIsFixedByItsUsers();
    void accessFollowsTheQuads_data();
    void accessFollowsTheQuads();
    void routeIsRegisteredUntilReset();
    void refusedRouteRegistersNothing();
    void globalResetLinesAreOnlyAppended();
    void generatorFindsDividers_data();
    void generatorFindsDividers();
    void descriptorFormat();
    void generateFileIsAtomic();
};

void TestRegistry::init()
{
    reg()->reset();
}

void TestRegistry::freeLanesFollowTheDeviceAndOtherCores()
{
    QCOMPARE(reg()->notOccupiedLanes().size(), 8);
    reg()->setDevice(Core::IdeCore::deviceDataBase()->findDevice(QStringLiteral("DVA-1-C2I1")));
    QCOMPARE(reg()->notOccupiedLanes(),
             QStringList({QStringLiteral("Q0 Lane0"), QStringLiteral("Q0 Lane1"),
                          QStringLiteral("Q0 Lane2"), QStringLiteral("Q0 Lane3")}));
    QVERIFY(reg()->occupyLane(QStringLiteral("Q0 Lane1")));
    QVERIFY(!reg()->occupyLane(QStringLiteral("Q0 Lane1")));
    QVERIFY(!reg()->occupyLane(QStringLiteral("Q1 Lane0"))); // not on this device
    QCOMPARE(reg()->notOccupiedLanes().size(), 3);
    QVERIFY(!reg()->notOccupiedLanes().contains(QStringLiteral("Q0 Lane1")));
    reg()->resetLane(QStringLiteral("Q0_LANE1"), false);
    QCOMPARE(reg()->notOccupiedLanes().size(), 4);
}

void TestRegistry::qpllsProduceRatesOfTheirSetUp_data()
{
    QTest::addColumn<double>("setUp");
    QTest::addColumn<double>("asked");
    QTest::addColumn<bool>("produced");
    QTest::newRow("same rate") << 9.8304 << 9.8304 << true;
    QTest::newRow("half rate") << 9.8304 << 4.9152 << true;
    QTest::newRow("eighth rate") << 9.8304 << 1.2288 << true;
    QTest::newRow("other family of rates") << 9.8304 << 6.144 << false;
    QTest::newRow("no rate") << 9.8304 << 0.0 << false;
}

void TestRegistry::qpllsProduceRatesOfTheirSetUp()
{
    QFETCH(double, setUp);
    QFETCH(double, asked);
    QFETCH(bool, produced);
    QVERIFY(!reg()->checkPllEnable(QStringLiteral("Q1_QPLL1")));
    QVERIFY(reg()->enablePll(QStringLiteral("Q1_QPLL1"), setUp));
    QVERIFY(reg()->checkPllEnable(QStringLiteral("Q1_QPLL1")));
    QVERIFY(reg()->checkPLLforQuad0(asked).isEmpty());
    QCOMPARE(reg()->checkPLLforQuad1(asked),
             produced ? QStringList{QStringLiteral("QPLL1")} : QStringList());
}

void TestRegistry::referenceFrequencyIsFixedByItsUsers()
{
    QCOMPARE(reg()->getFreqByRefsrc(QStringLiteral("Q0 REFCLK1")), 0.0);
    QVERIFY(reg()->fixReference(QStringLiteral("Q0 REFCLK1"), 245.76));
    QCOMPARE(reg()->getFreqByRefsrc(QStringLiteral("Q0 REFCLK1")), 245.76);
    IPSERDESIP::REF_SOURCE *source = reg()->FormStringToREFSPtr(QStringLiteral("q0_refclk1"));
    QVERIFY(source);
    QCOMPARE(source->userCount, 1);
    QCOMPARE(reg()->FormStringToREFSPtr(QStringLiteral("q0_refclk1")), source);
    QVERIFY(!reg()->FormStringToREFSPtr(QStringLiteral("nothing")));
    QVERIFY(!reg()->fixReference(QStringLiteral("Q9 REFCLK0"), 100));
}

void TestRegistry::accessFollowsTheQuads_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("access");
    QTest::addColumn<bool>("reaches");
    QTest::newRow("own quad") << "DVC-1-C2I1" << "q1_refclk2" << "Q1_LANE0_RX" << true;
    QTest::newRow("shared pin, other quad") << "DVC-1-C2I1" << "q0_refclk1" << "Q1_LANE3_TX" << true;
    QTest::newRow("local pin, other quad") << "DVC-1-C2I1" << "q0_refclk2" << "Q1_LANE3_TX" << false;
    QTest::newRow("gpio to quad 1") << "DVA-2-I2" << "q0_gpio0" << "Q1_LANE0_RX" << false;
    QTest::newRow("main clock") << "DVB-4-C1" << "mclk" << "Q1_LANE1_RX" << true;
    QTest::newRow("lane not on device") << "DVA-1-C2I1" << "mclk" << "Q1_LANE0_RX" << false;
    QTest::newRow("unknown source") << "DVC-1-C2I1" << "" << "Q0_LANE0_RX" << false;
    QTest::newRow("malformed access") << "DVC-1-C2I1" << "q0_refclk0" << "Q0 Lane0" << false;
}

void TestRegistry::accessFollowsTheQuads()
{
    QFETCH(QString, device);
    QFETCH(QString, source);
    QFETCH(QString, access);
    QFETCH(bool, reaches);
    reg()->setDevice(Core::IdeCore::deviceDataBase()->findDevice(device));
    QCOMPARE(reg()->checkAccess(source, access), reaches);
}

void TestRegistry::routeIsRegisteredUntilReset()
{
    const QStringList lanes{QStringLiteral("Q0_LANE2")};
    QVERIFY(reg()->checkRoute(lanes, {QStringLiteral("Q0_CPLL2")}, {QStringLiteral("Q0_REFCLK0")},
                              {QStringLiteral("122.88")}));
    QCOMPARE(reg()->pendingRoutes(), lanes);
    QCOMPARE(reg()->getFreqByRefsrc(QStringLiteral("Q0 REFCLK0")), 122.88);
    QVERIFY(!reg()->notOccupiedLanes().contains(QStringLiteral("Q0 Lane2")));
    reg()->resetLane(QStringLiteral("Q0_LANE2"), false);
    QVERIFY(reg()->pendingRoutes().isEmpty());
    QCOMPARE(reg()->getFreqByRefsrc(QStringLiteral("Q0 REFCLK0")), 0.0);
    QCOMPARE(reg()->notOccupiedLanes().size(), 8);
}

void TestRegistry::refusedRouteRegistersNothing()
{
    QVERIFY(reg()->fixReference(QStringLiteral("Q0 REFCLK0"), 100));
    // The reference already runs at another frequency.
    QVERIFY(!reg()->checkRoute({QStringLiteral("Q0_LANE0")}, {QStringLiteral("Q0_QPLL0")},
                               {QStringLiteral("Q0_REFCLK0")}, {QStringLiteral("122.88")}));
    // A PLL of the other quad.
    QVERIFY(!reg()->checkRoute({QStringLiteral("Q0_LANE0")}, {QStringLiteral("Q1_QPLL0")},
                               {QStringLiteral("Q0_REFCLK1")}, {QStringLiteral("122.88")}));
    QVERIFY(reg()->pendingRoutes().isEmpty());

    // Another core's resources, from its resource record.
    IPSERDESIP::Message other;
    other.laneList << QStringLiteral("Q0_LANE3");
    other.pllList << QStringLiteral("Q0_QPLL1");
    other.refClockList << QStringLiteral("Q0_REFCLK1");
    other.refFreqList << QStringLiteral("153.6");
    other.lineRates << QStringLiteral("10.1376");
    QVERIFY(reg()->occupy(other));
    QVERIFY(reg()->checkPllEnable(QStringLiteral("Q0_QPLL1")));
    QCOMPARE(reg()->getFreqByRefsrc(QStringLiteral("Q0 REFCLK1")), 153.6);
    QCOMPARE(reg()->occupiedLanes(), other.laneList);
    QVERIFY(!reg()->occupy(other));
}

void TestRegistry::globalResetLinesAreOnlyAppended()
{
    const QStringList before = {QStringLiteral("q1_ln0_enable true"), QStringLiteral("q1_enable true"),
                                QStringLiteral("q0_enable true")};
    QStringList settings = before;
    reg()->setGlobalResetEnableParam(settings);
    reg()->setGlobalResetEnableParam(settings);
    QCOMPARE(settings.mid(0, before.size()), before);
    QCOMPARE(settings.mid(before.size()),
             QStringList({QStringLiteral("q1_global_reset_en true"),
                          QStringLiteral("q0_global_reset_en true")}));
}

void TestRegistry::generatorFindsDividers_data()
{
    QTest::addColumn<QStringList>("settings");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<int>("errors");
    QTest::newRow("9.8304 from 122.88 on QPLL0")
        << clockedLane(QStringLiteral("qpll0"), QStringLiteral("9.83040"),
                       QStringLiteral("q0_refclk0_freq 122.88"))
        << true << 0;
    QTest::newRow("3.072 on CPLL")
        << clockedLane(QStringLiteral("cpll"), QStringLiteral("3.07200"),
                       QStringLiteral("q0_refclk0_freq 122.88"))
        << true << 0;
    QTest::newRow("9.8304 out of CPLL reach")
        << clockedLane(QStringLiteral("cpll"), QStringLiteral("9.83040"),
                       QStringLiteral("q0_refclk0_freq 122.88"))
        << false << 0;
    QTest::newRow("no frequency")
        << clockedLane(QStringLiteral("qpll0"), QStringLiteral("9.83040"), QStringLiteral("x 1"))
        << false << 1;
    QTest::newRow("empty value")
        << clockedLane(QString(), QStringLiteral("9.83040"), QStringLiteral("mclk_freq 100"))
        << false << 2;
}

void TestRegistry::generatorFindsDividers()
{
    QFETCH(QStringList, settings);
    QFETCH(bool, ok);
    QFETCH(int, errors);
    QTemporaryDir dir;
    const QString csr = dir.path() + QStringLiteral("/cpri.csr");
    IPSERDESIP::generator generator;
    QCOMPARE(generator.generate(settings, csr, {}), ok);
    QCOMPARE(generator.getErrStringList().size(), errors);
    QCOMPARE(QFile::exists(csr), ok);
}

void TestRegistry::descriptorFormat()
{
    QTemporaryDir dir;
    QFile file(dir.path() + QStringLiteral("/a.ipspec"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("# comment\n\n ipcore.id = a b \nipcore.list += x\nipcore.list += y\nipcore.empty =\n");
    file.close();
    const QMap<QString, QVariant> info = IPCore::processIPInfoSpec(file.fileName());
    QCOMPARE(info.value(QStringLiteral("ipcore.id")).toString(), QStringLiteral("a b"));
    QCOMPARE(info.value(QStringLiteral("ipcore.list")).toStringList(),
             QStringList({QStringLiteral("x"), QStringLiteral("y")}));
    QVERIFY(info.contains(QStringLiteral("ipcore.empty")));
    QVERIFY(!IPCore::checkCommonInfo(info));
    QVERIFY(IPCore::processIPInfoSpec(dir.path() + QStringLiteral("/missing")).isEmpty());
}

void TestRegistry::generateFileIsAtomic()
{
    QTemporaryDir dir;
    const QString path = dir.path() + QStringLiteral("/out.vh");
    QVERIFY(IPCore::generateFile(path, {QStringLiteral("a"), QStringLiteral("\u00b5")}, nullptr,
                                 QString()));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("a\n\xc2\xb5\n"));
    file.close();
    QVERIFY(QDir().mkpath(dir.path() + QStringLiteral("/blocked")));
    QVERIFY(!IPCore::generateFile(dir.path() + QStringLiteral("/blocked"), {QStringLiteral("x")},
                                  nullptr, QString()));
    QVERIFY(IPCore::lastError().contains(QStringLiteral("blocked")));
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList{QStringLiteral("out.vh")});
}

QTEST_MAIN(TestRegistry)
#include "tst_registry.moc"
