// The reference host's resource registry, its PLL model, the device library and file helpers.

#include <core/idecore.h>
#include <dev/devicedb.h>
#include <ipcore/ipcorefunctions.h>
#include <ipserdes/message.h>
#include <ipserdes/pllmodel_p.h>
#include <ipserdes/serdes.h>
#include <ipserdes/serdesfunctions.h>

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using IPSERDESIP::Conflict;

namespace {

IPSERDESIP::serdes *reg()
{
    return IPSERDESIP::serdes::instance();
}

QString str(const char *text)
{
    return QString::fromLatin1(text);
}

QStringList texts(const QString &joined)
{
    return joined.split(QLatin1Char('|'));
}

const QString A = str("a:x");
const QString B = str("b:y");
// Core a:x holds Q0_LANE1 on Q0_QPLL0 (9.8304 GHz) fed from Q0_REFCLK0 at 122.88 MHz.
const QString ACore = str("Q0_LANE1 Q0_QPLL0 Q0_REFCLK0 122.88 9.8304");

// A core with one entry "lane PLL reference frequency rate" per comma-separated group.
IPSERDESIP::Message core(const QString &name, const QString &entries)
{
    IPSERDESIP::Message m;
    m.instanceName = name;
    for (const QString &entry : entries.split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        const QStringList f = entry.split(QLatin1Char(' '));
        m.laneList << f[0], m.pllList << f[1], m.refClockList << f[2], m.refFreqList << f[3];
        m.lineRates << f[4];
    }
    return m;
}

int refUsers(const char *serdesName)
{
    return reg()->FormStringToREFSPtr(str(serdesName))->userCount;
}

} // namespace

class TestRegistry : public QObject
{
    Q_OBJECT

private slots:
    void init() { reg()->reset(); }
    void conflictsNameResourceAndHolder_data();
    void conflictsNameResourceAndHolder();
    void sharedResourcesCountTheirUsers();
    void routeReleasesOnlyWhatItTook_data();
    void routeReleasesOnlyWhatItTook();
    void quadBiasClaims_data();
    void quadBiasClaims();
    void callLogFormat();
    void projectSetUp();
    void globalResetLinesAreOnlyAppended();
    void dividerSearchReachesEveryRate();
    void deviceLibrary();
    void descriptorFormat();
    void generateFileIsAtomic();
};

void TestRegistry::conflictsNameResourceAndHolder_data()
{
    QTest::addColumn<QString>("entries");  // of core b:y, placed after core a:x
    QTest::addColumn<QString>("conflict"); // kind|resource|holder|message
    for (const auto &row : std::initializer_list<std::pair<const char *, const char *>>{
             {"Q0_LANE1 Q0_CPLL1 Q0_REFCLK0 122.88 2.4576", "lane|Q0_LANE1|a:x|lane Q0_LANE1 is held by a:x"},
             {"Q0_LANE2 Q0_CPLL2 Q0_REFCLK0 245.76 2.4576", "reference|Q0_REFCLK0|a:x|reference clock "
                                                            "Q0_REFCLK0 is set to 122.88 MHz by a:x, not 245.76 MHz"},
             {"Q0_LANE2 Q0_QPLL0 Q0_REFCLK1 245.76 9.8304",
              "PLL|Q0_QPLL0|a:x|PLL Q0_QPLL0 is fed from Q0_REFCLK0 by a:x, not from Q0_REFCLK1"},
             {"Q0_LANE2 Q0_QPLL0 Q0_REFCLK0 122.88 10.1376",
              "PLL|Q0_QPLL0|a:x|PLL Q0_QPLL0 is set to 9.8304 GHz by a:x and cannot produce 10.1376 Gbps"},
             {"Q0_LANE2 Q0_QPLL1 Q0_REFCLK0 122.88 20", "PLL|Q0_QPLL1||PLL Q0_QPLL1 cannot produce 20 Gbps"},
             {"Q0_LANE2 Q1_QPLL0 Q0_REFCLK0 122.88 9.8304", "PLL|Q1_QPLL0||PLL Q1_QPLL0 cannot clock lane Q0_LANE2"},
             {"Q0_LANE2 Q0_CPLL3 Q0_REFCLK0 122.88 2.4576", "PLL|Q0_CPLL3||PLL Q0_CPLL3 cannot clock lane Q0_LANE2"},
             {"Q0_LANE2 Q0_CPLL2 Q1_REFCLK2 122.88 2.4576",
              "reference|Q1_REFCLK2||reference clock Q1_REFCLK2 does not reach lane Q0_LANE2"},
             {"Q0_LANE2 Q0_CPLL2 Q0_REFCLK1 abc 2.4576",
              "reference|Q0_REFCLK1||reference clock Q0_REFCLK1 cannot run at 0 MHz"},
             {"Q0_LANE2 Q0_CPLL2 Q0_REFCLK0 122.88 2.4576,Q1_LANE0 Q1_CPLL0 Q0_REFCLK0 122.88 2.4576",
              "unknown|Q1_LANE0||lane Q1_LANE0 is not on device DVA-1-C2I1"},
             {"Q0_LANE2 Q0_CPLL4 Q0_REFCLK0 122.88 2.4576", "unknown|Q0_CPLL4||PLL \"Q0_CPLL4\" does not exist"},
             {"Q0_LANE2 Q2_QPLL0 Q0_REFCLK0 122.88 2.4576", "unknown|Q2_QPLL0||PLL \"Q2_QPLL0\" does not exist"},
             {"Q0_LANE2 Q0_CPLL2 Q0_REFCLK9 122.88 2.4576",
              "unknown|Q0_REFCLK9||reference clock \"Q0_REFCLK9\" does not exist"},
             {"", "unknown|||core b:y names no lane"}})
        QTest::newRow(row.second) << str(row.first) << str(row.second);
}

void TestRegistry::conflictsNameResourceAndHolder()
{
    QFETCH(QString, entries);
    const char *kinds[] = {"none", "lane", "PLL", "reference", "bias", "unknown"};
    reg()->setDevice(Core::IdeCore::deviceDataBase()->findDevice(str("DVA-1-C2I1")));
    QVERIFY(reg()->occupy(core(A, ACore)));
    Conflict c;
    QVERIFY(!reg()->occupy(core(B, entries), &c));
    QTEST(QStringList({str(kinds[c.kind]), c.resource, c.holder, c.message}).join(QLatin1Char('|')), "conflict");
    QVERIFY(!reg()->release(B)); // it took nothing
    QCOMPARE(reg()->notOccupiedLanes(), texts(str("Q0 Lane0|Q0 Lane2|Q0 Lane3")));
    QCOMPARE(reg()->users(str("Q0_REFCLK0")), QStringList{A});
    QVERIFY(!reg()->occupy(core(B, entries))); // no conflict asked for
}

void TestRegistry::sharedResourcesCountTheirUsers()
{
    QVERIFY(reg()->occupy(core(A, ACore)));
    QVERIFY(reg()->occupy(core(B, str("Q0_LANE2 Q0_QPLL0 Q0_REFCLK0 122.880 4.9152"))));
    QCOMPARE(reg()->users(str("Q0_QPLL0")), QStringList({A, B}));
    QCOMPARE(refUsers("q0_refclk0"), 2);
    QVERIFY(reg()->release(A) && reg()->checkPllEnable(str("Q0_QPLL0")));
    QCOMPARE(reg()->checkPLLforQuad0(9.8304), QStringList{str("QPLL0")});
    QCOMPARE(reg()->getFreqByRefsrc(str("Q0 REFCLK0")) * refUsers("q0_refclk0"), 122.88);
    QVERIFY(reg()->release(B) && !reg()->release(B) && !reg()->checkPllEnable(str("Q0_QPLL0")));
    QCOMPARE(reg()->getFreqByRefsrc(str("Q0 REFCLK0")) + refUsers("q0_refclk0"), 0.0);
    // Freed, they take another set-up.
    QVERIFY(reg()->occupy(core(B, str("Q1_LANE3 Q1_QPLL0 Q0_REFCLK0 245.76 10.1376"))));
    QCOMPARE(reg()->checkPLLforQuad1(5.0688), QStringList{str("QPLL0")});
    QVERIFY(reg()->checkPLLforQuad0(10.1376).isEmpty() && reg()->checkPLLforQuad1(9.8304).isEmpty());
    // What the project sets up itself is held by no core.
    QVERIFY(reg()->enablePll(str("Q1_QPLL1"), 12.16512) && !reg()->enablePll(str("Q1_QPLL1"), 9.8304));
    QCOMPARE(reg()->checkPLLforQuad1(6.08256), QStringList{str("QPLL1")});
    QVERIFY(reg()->fixReference(str("Q1 REFCLK0"), 153.6, 2) && !reg()->fixReference(str("Q1 REFCLK0"), 1));
    QVERIFY(refUsers("q1_refclk0") == 2 && !reg()->fixReference(str("Q9 REFCLK0"), 1));
    QVERIFY(reg()->occupyLane(str("Q1 Lane1")) && !reg()->occupyLane(str("q1 lane2")));
    Conflict c;
    QVERIFY(!reg()->occupy(core(A, str("Q1_LANE1 Q1_CPLL1 Q1_REFCLK0 153.6 2.4576")), &c));
    QCOMPARE(c.holder + c.message, str("lane Q1_LANE1 is held by the project's shared values"));
}

void TestRegistry::routeReleasesOnlyWhatItTook_data()
{
    QTest::addColumn<QString>("route"); // lanes;PLLs;references;frequencies, "|" between entries
    QTest::addColumn<bool>("accepted");
    QTest::newRow("shares a:x's PLL") << "Q0_LANE2;Q0_QPLL0;Q0_REFCLK0;122.880" << true;
    QTest::newRow("two lanes") << "Q0_LANE2|Q1_LANE0;Q0_QPLL1|Q1_CPLL0;Q0_REFCLK1|MCLK;100|100" << true;
    QTest::newRow("neighbour's clock") << "Q1_LANE2;Q1_QPLL1;Q0_REFCLK1;100" << true;
    QTest::newRow("a:x's lane") << "Q0_LANE1;Q0_CPLL1;Q0_REFCLK0;122.88" << false;
    QTest::newRow("second lane held") << "Q0_LANE2|Q0_LANE1;Q0_CPLL2|Q0_CPLL1;MCLK|MCLK;100|100" << false;
    QTest::newRow("QPLL from another clock") << "Q0_LANE2;Q0_QPLL0;Q0_REFCLK1;245.76" << false;
    QTest::newRow("clock at another frequency") << "Q0_LANE2;Q0_CPLL2;Q0_REFCLK0;245.76" << false;
    QTest::newRow("clock out of reach") << "Q1_LANE2;Q1_CPLL2;Q0_REFCLK2;100" << false;
    QTest::newRow("input of quad 0") << "Q1_LANE0;Q1_CPLL0;Q0_REFIN;100" << false;
    QTest::newRow("PLL of the other quad") << "Q1_LANE2;Q0_QPLL1;MCLK;100" << false;
}

void TestRegistry::routeReleasesOnlyWhatItTook()
{
    QFETCH(QString, route);
    QFETCH(bool, accepted);
    QVERIFY(reg()->occupy(core(A, ACore)));
    QList<QStringList> l;
    for (const QString &list : route.split(QLatin1Char(';')))
        l << texts(list);
    QCOMPARE(reg()->checkRoute(l[0], l[1], l[2], l[3]), accepted);
    QCOMPARE(reg()->pendingRoutes(), accepted ? l[0] : QStringList());
    QCOMPARE(reg()->notOccupiedLanes().size(), accepted ? 7 - l[0].size() : 7);
    QCOMPARE(refUsers("q0_refclk0"), l[2].count(str("Q0_REFCLK0")) * accepted + 1);
    for (const QString &lane : l[0])
        reg()->resetLane(lane, false);
    QCOMPARE(reg()->occupiedLanes(), QStringList{str("Q0_LANE1")});
    QVERIFY(reg()->pendingRoutes().isEmpty() && reg()->notOccupiedLanes().size() == 7);
    QCOMPARE(reg()->users(str("Q0_QPLL0")) + reg()->users(str("Q0_REFCLK0")), QStringList({A, A}));
}

void TestRegistry::quadBiasClaims_data()
{
    QTest::addColumn<bool>("projectFirst");
    QTest::addColumn<QString>("claim"); // key|holder|value|refusal, after a:x claimed Q0_BIAS = 7
    for (const char *claim : {"Q0_BIAS|b:y|7|", "Q0_BIAS|a:x|9|", "Q1_BIAS|b:y|9|",
                              "Q0_BIAS|b:y|9|Q0_BIAS is fixed to 7 by a:x, not 9",
                              "Q2_BIAS|b:y|7|\"Q2_BIAS\" is no quad bias",
                              "Q1_BIAS|b:y|16|Q1_BIAS takes 0 to 15, not 16",
                              "Q1_BIAS|b:y|-1|Q1_BIAS takes 0 to 15, not -1"})
        QTest::newRow(claim) << false << str(claim);
    QTest::newRow("project fixed it first")
        << true << str("Q0_BIAS|b:y|9|Q0_BIAS is fixed to 7 by the project's shared values, not 9");
}

void TestRegistry::quadBiasClaims()
{
    QFETCH(bool, projectFirst);
    QFETCH(QString, claim);
    const QStringList f = texts(claim);
    const QString q0 = str("Q0_BIAS");
    if (projectFirst)
        reg()->setData(q0, 7);
    QVERIFY(reg()->claimQuadBias(q0, 7, A));
    Conflict c;
    QCOMPARE(reg()->claimQuadBias(f[0], f[2].toInt(), f[1], &c), f[3].isEmpty());
    QCOMPARE(c.holder + c.message, (f[3].contains(A) ? A : QString()) + f[3]);
    QCOMPARE(reg()->getData(f[0]).toInt(), f[3].isEmpty() ? f[2].toInt() : f[0] == q0 ? 7 : 0);
    // The value goes with its last holder.
    reg()->release(A);
    QCOMPARE(reg()->globalData().contains(q0), projectFirst || (f[1] == B && f[0] == q0 && f[3].isEmpty()));
    reg()->release(B);
    QCOMPARE(reg()->globalData().contains(q0), projectFirst);
}

void TestRegistry::callLogFormat()
{
    QVERIFY(reg()->occupy(core(A, ACore))); // the project model itself is not logged
    reg()->claimQuadBias(str("Q1_BIAS"), 3, A);
    QStringList settings = texts(str("q0_enable true|x 1"));
    reg()->notOccupiedLanes(), reg()->checkPLLforQuad0(9.8304), reg()->checkPLLforQuad1(12.16512);
    reg()->checkPllEnable(str("Q0_QPLL0")), reg()->getFreqByRefsrc(str("Q0 REFCLK0"));
    reg()->checkAccess(str("q0_refclk0"), str("Q0_LANE0_RX")), reg()->FormStringToREFSPtr(str("q0_refclk0"));
    reg()->checkRoute(texts(str("Q0_LANE0|Q0_LANE2")), {str("Q0_QPLL0")}, {}, {str("122.880")});
    reg()->resetLane(str("Q0_LANE0"), false), reg()->resetLane(str("Q0_LANE2"), true);
    reg()->setData(str("Q0_BIAS"), 7), reg()->getData(str("Q0_BIAS")), reg()->globalData();
    reg()->workingDir(), reg()->setGlobalResetEnableParam(settings);
    QCOMPARE(reg()->callLog(),
             texts(str("notOccupiedLanes()|checkPLLforQuad0(9.8304)|checkPLLforQuad1(12.16512)"
                       "|checkPllEnable(Q0_QPLL0)|getFreqByRefsrc(Q0 REFCLK0)"
                       "|checkAccess(q0_refclk0, Q0_LANE0_RX)|FormStringToREFSPtr(q0_refclk0)"
                       "|checkRoute([Q0_LANE0, Q0_LANE2], [Q0_QPLL0], [], [122.880])"
                       "|resetLane(Q0_LANE0, false)|resetLane(Q0_LANE2, true)|setData(Q0_BIAS, 7)"
                       "|getData(Q0_BIAS)|globalData()|workingDir()"
                       "|setGlobalResetEnableParam([q0_enable true, x 1])")));
    reg()->clearCallLog();
    QVERIFY(reg()->callLog().isEmpty());
    reg()->globalData(), reg()->reset();
    QVERIFY(reg()->callLog().isEmpty());
}

void TestRegistry::projectSetUp()
{
    QCOMPARE(reg()->workingDir(), QDir::currentPath());
    reg()->setWorkingDir(str("/w"));
    QCOMPARE(reg()->workingDir(), str("/w"));
    QCOMPARE(reg()->notOccupiedLanes().size(), 8);
    reg()->setDevice(Core::IdeCore::deviceDataBase()->findDevice(str("DVA-1-C2I1")));
    QVERIFY(reg()->occupyLane(str("Q0 Lane1")) && !reg()->occupyLane(str("Q1 Lane0")));
    QCOMPARE(reg()->notOccupiedLanes(), texts(str("Q0 Lane0|Q0 Lane2|Q0 Lane3")));
    for (const char *access : {"Q1_LANE0_RX", "Q0_LANE0_XX", "Q0_LANE4_RX", "Q0_LANE0"})
        QVERIFY2(!reg()->checkAccess(str("q0_refclk0"), str(access)), access);
    QVERIFY(reg()->checkAccess(str("q0_refclk0"), str("Q0_LANE0_TX")) && !reg()->FormStringToREFSPtr(str("x")));
    QStringList names;
    for (const char *ref : {"Q0 REFCLK3", "Q1 REFCLK2", "Q0 REFIN2", "Q0 REFIN", "MCLK", "Q0 REFCLK4"})
        names << IPSERDESIP::FromRefOptionToRef(str(ref)) << IPSERDESIP::refsrcOptTransforSerdesName(str(ref));
    QCOMPARE(names, texts(str("Q0_REFCLK3|q0_refclk3|Q1_REFCLK2|q1_refclk2|Q0_REFIN2|q0_gpio2|Q0_REFIN|q0_gpio"
                              "|MCLK|mclk||")));
    reg()->reset();
    QVERIFY(reg()->device().isNull() && reg()->workingDir() == QDir::currentPath());
}

void TestRegistry::globalResetLinesAreOnlyAppended()
{
    const QStringList before = texts(str("q1_ln0_enable true|q1_enable true|q0_enable true"));
    QStringList settings = before;
    reg()->setGlobalResetEnableParam(settings);
    reg()->setGlobalResetEnableParam(settings);
    QCOMPARE(settings, before + texts(str("q1_global_reset_en true|q0_global_reset_en true")));
}

// Every line rate from either reference on either QPLL: VCO = reference * N / M, rate = VCO / D.
void TestRegistry::dividerSearchReachesEveryRate()
{
    using namespace IPSERDESIP::Internal;
    for (double rate : {0.6144, 1.2288, 2.4576, 3.072, 4.9152, 6.144, 9.8304, 8.11008, 10.1376, 12.16512}) {
        for (const char *name : {"QPLL0", "QPLL1"}) {
            const PllType *type = pllType(str(name));
            for (double ref : {122.88, 245.76}) {
                const std::optional<PllSetting> s = findSetting(*type, ref, rate);
                QVERIFY2(s, qPrintable(QStringLiteral("%1 %2 %3").arg(str(name)).arg(rate).arg(ref)));
                QVERIFY(qFuzzyCompare(ref * s->n / s->m / 1000.0, s->vcoGHz) && qFuzzyCompare(s->vcoGHz / s->d, rate));
                QVERIFY(type->vcoMinGHz <= s->vcoGHz && s->vcoGHz <= type->vcoMaxGHz);
                QVERIFY(producesRate(*type, s->vcoGHz, rate) && !producesRate(*type, s->vcoGHz, rate * 1.001));
                QCOMPARE(vcoForRate(*type, rate), std::optional<double>(s->vcoGHz));
            }
            QVERIFY(!findSetting(*type, 0.0, rate) && !findSetting(*type, 122.88, 20.0));
            QVERIFY(!vcoForRate(*type, 0.0) && !vcoForRate(*type, 20.0));
        }
    }
}

void TestRegistry::deviceLibrary()
{
    const QStringList all = texts(str("Q0 Lane0|Q0 Lane1|Q0 Lane2|Q0 Lane3|Q1 Lane0|Q1 Lane1|Q1 Lane2|Q1 Lane3"));
    const DEV::DeviceDb *db = Core::IdeCore::deviceDataBase();
    QCOMPARE(db->devices().size(), 6);
    for (const char *row : {"DVA-1-C2I1|DVA-1|C2/I1|1", "DVA-2-I2|DVA-2|I2|2", "DVB-1-C2I1|DVB-1|C2/I1|1",
                            "DVB-4-C1|DVB-4|C1|2", "DVC-1-C2I1|DVC-1|C2/I1|2", "DVC-2-I2|DVC-2|I2|1"}) {
        const QStringList f = texts(str(row));
        const DEV::DeviceArg expected(f[0], f[1], f[2], all.mid(0, 4 * f[3].toInt()));
        QCOMPARE(db->findDevice(f[0]), expected);
        QVERIFY(expected != DEV::DeviceArg(f[0], f[1], f[2], expected.lanes().mid(1)) && !expected.isNull());
        QVERIFY(expected != DEV::DeviceArg(f[0], f[1], QString(), expected.lanes()));
        QVERIFY(expected != DEV::DeviceArg(f[0], QString(), f[2], expected.lanes()));
        QCOMPARE(DEV::DeviceDb({expected}).findDevice(f[0]).device(), f[1]);
    }
    QVERIFY(db->findDevice(str("DVC-1")).isNull());
    QVERIFY(DEV::DeviceDb(QList<DEV::DeviceArg>()).findDevice(str("DVA-2-I2")).isNull());
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
