// The reference host's resource registry, generator and file helpers.

#include <dev/devicedb.h>
#include <core/idecore.h>
#include <ipcore/ipcorefunctions.h>
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

} // namespace

class TestRegistry : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void freeLanesFollowTheDeviceAndOtherCores();
    void routeIsRegisteredUntilReset();
    void refusedRouteRegistersNothing();
    void globalResetLinesAreOnlyAppended();
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

QTEST_MAIN(TestRegistry)
#include "tst_registry.moc"
