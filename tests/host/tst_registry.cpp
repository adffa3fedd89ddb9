// The reference host's resource registry, its PLL model, the device library and file helpers.

#include <core/idecore.h>
#include <dev/devicedb.h>
#include <ipcore/ipcorefunctions.h>
#include <ipserdes/generator.h>
#include <ipserdes/message.h>
#include <ipserdes/pllmodel_p.h>
#include <ipserdes/serdes.h>
#include <ipserdes/serdesfunctions.h>

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

namespace {

IPSERDESIP::serdes *reg()
{
    return IPSERDESIP::serdes::instance();
}
QStringList texts(const QString &joined)
{
    return joined.split('|');
}

const QString A = "a:x", B = "b:y";
// Core a:x holds Q0_LANE1 on Q0_QPLL0 (9.8304 GHz) fed from Q0_REFCLK0 at 122.88 MHz.
const QString ACore = "Q0_LANE1 Q0_QPLL0 Q0_REFCLK0 122.88 9.8304";

// A core with one entry "lane PLL reference frequency rate" per comma-separated group.
IPSERDESIP::Message core(const QString &name, const QString &entries)
{
    IPSERDESIP::Message m;
    m.instanceName = name;
    for (const QString &entry : entries.split(',', Qt::SkipEmptyParts)) {
        const QStringList f = entry.split(' ');
        m.laneList << f[0], m.pllList << f[1], m.refClockList << f[2], m.refFreqList << f[3],
            m.lineRates << f[4];
    }
    return m;
}

int refUsers(const char *serdesName)
{
    return reg()->FormStringToREFSPtr(QString(serdesName))->userCount;
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
    void routeReleasesOnlyWhatItTook();
    void quadBiasClaims();
    void callLogFormat();
    void projectSetUp();
    void globalResetLinesAreOnlyAppended();
    void dividerSearchReachesEveryRate();
    void unreachableRateNamesItsCause();
    void deviceLibrary();
};

// clang-format off
void TestRegistry::conflictsNameResourceAndHolder_data()
{
    QTest::addColumn<QString>("entries");  // of core b:y, placed after core a:x
    QTest::addColumn<QString>("conflict"); // kind|resource|holder|message
    QTest::addColumn<bool>("routeTaken");  // by checkRoute, which knows no line rate
    for (const auto &row : std::initializer_list<std::tuple<const char *, const char *, bool>>{
             {"Q0_LANE1 Q0_CPLL1 Q0_REFCLK0 122.88 2.4576", "lane|Q0_LANE1|a:x|lane Q0_LANE1 is held by a:x", false},
             {"Q0_LANE2 Q0_CPLL2 Q0_REFCLK0 245.76 2.4576", "reference|Q0_REFCLK0|a:x|reference clock Q0_REFCLK0 is set to 122.88 MHz by a:x, not 245.76 MHz", false},
             {"Q0_LANE2 Q0_QPLL0 Q0_REFCLK1 245.76 9.8304", "PLL|Q0_QPLL0|a:x|PLL Q0_QPLL0 is fed from Q0_REFCLK0 by a:x, not from Q0_REFCLK1", false},
             {"Q0_LANE2 Q0_QPLL0 Q0_REFCLK0 122.88 10.1376", "PLL|Q0_QPLL0|a:x|PLL Q0_QPLL0 is set to 9.8304 GHz by a:x and cannot produce 10.1376 Gbps", true},
             {"Q0_LANE2 Q0_QPLL1 Q0_REFCLK0 122.88 20", "PLL|Q0_QPLL1||PLL Q0_QPLL1 cannot produce 20 Gbps", true},
             {"Q0_LANE2 Q1_QPLL0 Q0_REFCLK0 122.88 9.8304", "PLL|Q1_QPLL0||PLL Q1_QPLL0 cannot clock lane Q0_LANE2", false},
             {"Q0_LANE2 Q0_CPLL2 Q1_REFCLK2 122.88 2.4576", "reference|Q1_REFCLK2||reference clock Q1_REFCLK2 does not reach lane Q0_LANE2", false},
             {"Q1_LANE2 Q1_CPLL2 Q0_REFIN2 122.88 2.4576", "reference|Q0_REFIN2||reference clock Q0_REFIN2 does not reach lane Q1_LANE2", false},
             {"Q0_LANE2 Q0_CPLL2 Q0_REFCLK1 abc 2.4576", "reference|Q0_REFCLK1||reference clock Q0_REFCLK1 cannot run at 0 MHz", false},
             {"Q0_LANE2 Q0_CPLL2 Q0_REFCLK0 122.88 2.4576,Q2_LANE0 Q0_CPLL0 Q0_REFCLK0 122.88 2.4576", "unknown|Q2_LANE0||lane Q2_LANE0 is not on device DVC-1-C2I1", false},
             {"Q0_LANE2 Q0_CPLL4 Q0_REFCLK0 122.88 2.4576", "unknown|Q0_CPLL4||PLL \"Q0_CPLL4\" does not exist", false},
             {"Q0_LANE2 Q0_CPLL2 Q0_REFCLK9 122.88 2.4576", "unknown|Q0_REFCLK9||reference clock \"Q0_REFCLK9\" does not exist", false},
             {"", "unknown|||core b:y names no lane", true}})
        QTest::newRow(std::get<1>(row)) << QString(std::get<0>(row)) << QString(std::get<1>(row)) << std::get<2>(row);
}
// clang-format on

void TestRegistry::conflictsNameResourceAndHolder()
{
    QFETCH(QString, entries);
    QFETCH(bool, routeTaken);
    const char *kinds[] = {"none", "lane", "PLL", "reference", "bias", "unknown"};
    reg()->setDevice(Core::IdeCore::deviceDataBase()->findDevice("DVC-1-C2I1"));
    QVERIFY(reg()->occupy(core(A, ACore)));
    const IPSERDESIP::Message b = core(B, entries);
    IPSERDESIP::Conflict c;
    QVERIFY(!reg()->occupy(b, &c) && !reg()->occupy(b) && !reg()->release(B)); // it took nothing
    QTEST(QStringList({QString(kinds[c.kind]), c.resource, c.holder, c.message}).join('|'),
          "conflict");
    QCOMPARE(reg()->checkRoute(b.laneList, b.pllList, b.refClockList, b.refFreqList), routeTaken);
    QCOMPARE(reg()->pendingRoutes(), routeTaken ? b.laneList : QStringList());
    reg()->resetLane(b.laneList.value(0), false); // releases the route, never a:x's lane
    QCOMPARE(reg()->users("Q0_QPLL0") + reg()->users("Q0_REFCLK0") + reg()->occupiedLanes()
                 + reg()->pendingRoutes(),
             QStringList({A, A, "Q0_LANE1"}));
}

void TestRegistry::sharedResourcesCountTheirUsers()
{
    QVERIFY(reg()->occupy(core(A, ACore))
            && reg()->occupy(core(B, "Q0_LANE2 Q0_QPLL0 Q0_REFCLK0 122.880 4.9152")));
    QVERIFY(reg()->users("Q0_QPLL0") == QStringList({A, B}) && refUsers("q0_refclk0") == 2);
    QVERIFY(reg()->release(A) && reg()->checkPllEnable("Q0_QPLL0")
            && !reg()->checkPLLforQuad0(9.8304).isEmpty());
    QCOMPARE(reg()->getFreqByRefsrc("Q0 REFCLK0") * refUsers("q0_refclk0"), 122.88);
    QVERIFY(reg()->release(B) && !reg()->release(B) && !reg()->checkPllEnable("Q0_QPLL0")
            && !refUsers("q0_refclk0"));
    QVERIFY(reg()->occupy(
        core(B, "Q1_LANE3 Q1_QPLL0 Q0_REFCLK0 245.76 10.1376"))); // freed, set up anew
    QCOMPARE(reg()->checkPLLforQuad1(5.0688) + reg()->checkPLLforQuad0(10.1376),
             QStringList{"QPLL0"});
    QVERIFY(reg()->enablePll("Q1_QPLL1", 12.16512) && !reg()->enablePll("Q1_QPLL1", 9.8304));
    QVERIFY(reg()->fixReference("Q1 REFCLK0", 153.6, 2) && !reg()->fixReference("Q1 REFCLK0", 1));
    QVERIFY(refUsers("q1_refclk0") == 2
            && reg()->checkPLLforQuad1(6.08256) == QStringList{"QPLL1"});
}

void TestRegistry::routeReleasesOnlyWhatItTook()
{
    QVERIFY(reg()->occupy(core(A, ACore)));
    const QStringList lanes =
        texts("Q0_LANE2|Q0_LANE3|Q1_LANE0|Q1_LANE2"); // the route names them in reverse
    QVERIFY(reg()->checkRoute(
        texts("Q1_LANE2|Q1_LANE0|Q0_LANE3|Q0_LANE2"), texts("Q1_QPLL1|Q1_CPLL0|Q0_CPLL3|Q0_QPLL0"),
        texts("Q0_REFCLK1|MCLK|Q0_REFIN|Q0_REFCLK0"), texts("100|100|100|122.880")));
    QVERIFY(reg()->pendingRoutes() == lanes && reg()->occupiedLanes() == QStringList{"Q0_LANE1"});
    QVERIFY(reg()->users("Q0_QPLL0") == QStringList({A, "a pending route"})
            && refUsers("q0_refclk0") == 2);
    IPSERDESIP::Conflict c;
    QVERIFY(!reg()->occupy(core(B, "Q1_LANE0 Q1_CPLL0 MCLK 100 2.4576"), &c));
    QCOMPARE(c.message, "lane Q1_LANE0 is held by a pending route");
    for (const QString &lane : lanes)
        reg()->resetLane(lane, false);
    QVERIFY(reg()->pendingRoutes().isEmpty() && reg()->notOccupiedLanes().size() == 7);
    QVERIFY(reg()->users("Q0_QPLL0") == QStringList{A} && refUsers("q0_refclk0") == 1);
}

// Each claim follows a:x's claim of Q0_BIAS = 7: key|holder|value|refusal[|set by setData first].
void TestRegistry::quadBiasClaims()
{
    const QString q0 = "Q0_BIAS";
    for (const char *claim :
         {"Q0_BIAS|b:y|7|", "Q0_BIAS|a:x|9|", "Q1_BIAS|b:y|9|",
          "Q0_BIAS|b:y|9|Q0_BIAS is fixed to 7 by a:x, not 9",
          "Q2_BIAS|b:y|7|\"Q2_BIAS\" is no quad bias",
          "Q1_BIAS|b:y|16|Q1_BIAS takes 0 to 15, not 16",
          "Q1_BIAS|b:y|-1|Q1_BIAS takes 0 to 15, not -1",
          "Q0_BIAS|b:y|9|Q0_BIAS is fixed to 7 by the project's shared values, not 9|setData"}) {
        const QStringList f = texts(QString(claim));
        reg()->reset();
        if (f.size() > 4)
            reg()->setData(q0, 7);
        IPSERDESIP::Conflict c;
        QVERIFY(reg()->claimQuadBias(q0, 7, A));
        QVERIFY2(reg()->claimQuadBias(f[0], f[2].toInt(), f[1], &c) == f[3].isEmpty(), claim);
        QCOMPARE(c.holder + c.message, (f[3].contains(A) ? A : QString()) + f[3]);
        QCOMPARE(reg()->getData(f[0]).toInt(), f[3].isEmpty() ? f[2].toInt() : f[0] == q0 ? 7 : 0);
        reg()->release(A); // the value goes with its last holder
        QCOMPARE(reg()->globalData().contains(q0),
                 f.size() > 4 || (f[1] == B && f[0] == q0 && f[3].isEmpty()));
        QCOMPARE(reg()->release(B), f[1] == B && f[3].isEmpty());
        QCOMPARE(reg()->globalData().contains(q0), f.size() > 4);
    }
}

void TestRegistry::callLogFormat()
{
    QVERIFY(reg()->occupy(core(A, ACore)) && reg()->claimQuadBias("Q1_BIAS", 3, A)); // not logged
    QStringList settings = texts("q0_enable true|x 1");
    reg()->notOccupiedLanes(), reg()->checkPLLforQuad0(9.8304), reg()->checkPLLforQuad1(12.16512);
    reg()->checkPllEnable("Q0_QPLL0"), reg()->getFreqByRefsrc("Q0 REFCLK0");
    reg()->checkAccess("q0_refclk0", "Q0_LANE0_RX"), reg()->FormStringToREFSPtr("q0_refclk0");
    reg()->checkRoute(texts("Q0_LANE0|Q0_LANE2"), {"Q0_QPLL0"}, {}, {"122.880"});
    reg()->resetLane("Q0_LANE0", false), reg()->resetLane("Q0_LANE2", true),
        reg()->setData("Q0_BIAS", 7);
    reg()->getData("Q0_BIAS"), reg()->globalData(), reg()->workingDir(),
        reg()->setGlobalResetEnableParam(settings);
    QCOMPARE(
        reg()->callLog(),
        texts(QString(
            "notOccupiedLanes()|checkPLLforQuad0(9.8304)|checkPLLforQuad1(12.16512)|checkPllEnable(Q0_QPLL0)"
            "|getFreqByRefsrc(Q0 REFCLK0)|checkAccess(q0_refclk0, Q0_LANE0_RX)|FormStringToREFSPtr(q0_refclk0)"
            "|checkRoute([Q0_LANE0, Q0_LANE2], [Q0_QPLL0], [], [122.880])|resetLane(Q0_LANE0, false)"
            "|resetLane(Q0_LANE2, true)|setData(Q0_BIAS, 7)|getData(Q0_BIAS)|globalData()|workingDir()"
            "|setGlobalResetEnableParam([q0_enable true, x 1])")));
    reg()->clearCallLog();
    QVERIFY(reg()->callLog().isEmpty());
    reg()->globalData(), reg()->reset();
    QVERIFY(reg()->callLog().isEmpty());
}

void TestRegistry::projectSetUp()
{
    reg()->setWorkingDir("/w");
    QVERIFY(reg()->workingDir() == "/w" && reg()->notOccupiedLanes().size() == 8);
    reg()->setDevice(Core::IdeCore::deviceDataBase()->findDevice("DVA-1-C2I1"));
    QVERIFY(reg()->occupyLane("Q0 Lane1") && !reg()->occupyLane("Q1 Lane0")
            && !reg()->occupyLane({}));
    QCOMPARE(reg()->notOccupiedLanes(), texts("Q0 Lane0|Q0 Lane2|Q0 Lane3"));
    for (const char *access : {"Q1_LANE0_RX", "Q0_LANE0_XX", "Q0_LANE4_RX", "Q0_LANE0"})
        QVERIFY2(!reg()->checkAccess("q0_refclk0", QString(access)), access);
    using namespace IPSERDESIP;
    QStringList names;
    for (const char *ref :
         {"Q1 REFCLK2", "Q0 REFIN0", "Q0 REFIN", "MCLK", "Q2 REFCLK0", "Q0 REFCLK4", "Q0 REFIN4"})
        names << FromRefOptionToRef(QString(ref)) << refsrcOptTransforSerdesName(QString(ref));
    QCOMPARE(names,
             texts("Q1_REFCLK2|q1_refclk2|Q0_REFIN0|q0_gpio0|Q0_REFIN|q0_gpio|MCLK|mclk||||||"));
    QString message; // synthesis needs the sources, the generated files and a top module name
    QVERIFY(!waitForRunSyntheSis({}, {}, {}, {}, "c", message, nullptr)
            && message.startsWith("Synthesis of c failed: "));
    QVERIFY(!waitForRunSyntheSis({}, {}, {}, texts("a|b"), "c", message, nullptr)
            && message.contains("a, b"));
    reg()->reset();
    QVERIFY(reg()->device().isNull() && reg()->workingDir() == QDir::currentPath());
}

void TestRegistry::globalResetLinesAreOnlyAppended()
{
    const QString before = "q1_ln0_enable true|q1_enable true|q0_enable true";
    QStringList settings = texts(before);
    reg()->setGlobalResetEnableParam(settings), reg()->setGlobalResetEnableParam(settings);
    QCOMPARE(settings, texts(before + "|q1_global_reset_en true|q0_global_reset_en true"));
}

// Every line rate from either reference on either QPLL: VCO = reference * N / M, rate = VCO / D.
void TestRegistry::dividerSearchReachesEveryRate()
{
    using namespace IPSERDESIP::Internal;
    for (double rate :
         {0.6144, 1.2288, 2.4576, 3.072, 4.9152, 6.144, 9.8304, 8.11008, 10.1376, 12.16512}) {
        for (const PllType *type : {pllType("QPLL0"), pllType("QPLL1")}) {
            for (double ref : {122.88, 245.76}) {
                const std::optional<PllSetting> s = findSetting(*type, ref, rate);
                QVERIFY2(s, qPrintable(QString("%1 %2 %3").arg(type->name).arg(rate).arg(ref)));
                QVERIFY(qFuzzyCompare(ref * s->n / s->m / 1000.0, s->vcoGHz)
                        && qFuzzyCompare(s->vcoGHz / s->d, rate)
                        && (s->d & (s->d - 1)) == 0); // output dividers are powers of two
                QVERIFY(type->vcoMinGHz <= s->vcoGHz && s->vcoGHz <= type->vcoMaxGHz
                        && producesRate(*type, s->vcoGHz, rate)
                        && !producesRate(*type, s->vcoGHz, rate * 1.001));
                QCOMPARE(vcoForRate(*type, rate), std::optional<double>(s->vcoGHz));
            }
            QVERIFY(!findSetting(*type, 0.0, rate) && vcoForRate(*type, type->vcoMinGHz)
                    && vcoForRate(*type, type->vcoMaxGHz));
        }
    }
    QVERIFY(findSetting(*pllType("CPLL"), 122.88, 3.072)
            && findSetting(*pllType("CPLL"), 122.88, 0.6144));
    for (auto [name, minRef] : {std::pair("QPLL0", 245.0),
                                {"QPLL1", 250.0},
                                {"CPLL", 250.0}}) { // a VCO at either end of its range is used
        const PllType *type = pllType(QString(name));
        QVERIFY(findSetting(*type, 250.0, type->vcoMaxGHz * type->rateFactor)
                && findSetting(*type, minRef, type->vcoMinGHz * type->rateFactor));
    }
}

// A rate no divider setting makes names the PLL, its VCO range, the VCOs the rate needs, the PLL
// kinds that make it from that reference and the common references the PLL makes it from.
void TestRegistry::unreachableRateNamesItsCause()
{
    QStringList common;
    for (double mhz : IPSERDESIP::Internal::commonReferencesMHz())
        common << QString::number(mhz);
    const QString all = common.join(", ");
    QCOMPARE(
        all,
        "61.44, 76.8, 100, 122.88, 125, 153.6, 156.25, 184.32, 200, 245.76, 250, 307.2, 312.5, 368.64, 491.52");
    const char *const rows[][2] = {
        // clang-format off
        {"cpll 10.1376 122.88", "CPLL cannot generate 10.1376 Gbps from a 122.88 MHz reference clock|CPLL VCO range: 2 to 6.25 GHz; 10.1376 Gbps needs a VCO of 5.0688 GHz, which no divider setting reaches from 122.88 MHz|These PLL kinds generate 10.1376 Gbps from 122.88 MHz: QPLL0 (VCO 10.1376 GHz), QPLL1 (VCO 10.1376 GHz)|CPLL generates 10.1376 Gbps from none of the common reference clocks (ALL MHz)"},
        {"cpll 4 100.0001", "CPLL cannot generate 4 Gbps from a 100.0001 MHz reference clock|CPLL VCO range: 2 to 6.25 GHz; 4 Gbps needs a VCO of 2 or 4 GHz, which no divider setting reaches from 100.0001 MHz|No PLL kind generates 4 Gbps from 100.0001 MHz|CPLL generates 4 Gbps from these common reference clocks: 100, 125, 200, 250 MHz"},
        {"qpll1 14 125", "QPLL1 cannot generate 14 Gbps from a 125 MHz reference clock|QPLL1 VCO range: 8 to 13 GHz; no output divider brings 14 Gbps into it|These PLL kinds generate 14 Gbps from 125 MHz: QPLL0 (VCO 14 GHz)|QPLL1 generates 14 Gbps from none of the common reference clocks (ALL MHz)"},
        {"qpll0 16.375 100.0001", "QPLL0 cannot generate 16.375 Gbps from a 100.0001 MHz reference clock|QPLL0 VCO range: 9.8 to 16.375 GHz; 16.375 Gbps needs a VCO of 16.375 GHz, which no divider setting reaches from 100.0001 MHz|No PLL kind generates 16.375 Gbps from 100.0001 MHz|QPLL0 generates 16.375 Gbps from these common reference clocks: 125, 250 MHz"},
        {"qpll0 0 122.88", "No line rate is set"},
        // clang-format on
    };
    QTemporaryDir dir;
    for (const auto &row : rows) {
        const QStringList f = QString(row[0]).split(' ');
        IPSERDESIP::generator generator;
        QVERIFY(!generator.generate(
            {"q1_ln2_pll_sel " + f[0], "q1_ln2_tx_rate " + f[1], "mclk_freq " + f[2]},
            dir.filePath("a.csr"), {}));
        QCOMPARE(generator.getErrStringList(), texts(QString(row[1]).replace("ALL", all)));
    }
    QVERIFY(QDir(dir.path()).isEmpty());
}

// Every part the core's descriptor supports, in the grades of its family; a part's lanes are
// those of its quads.
void TestRegistry::deviceLibrary()
{
    const QStringList all =
        texts("Q0 Lane0|Q0 Lane1|Q0 Lane2|Q0 Lane3|Q1 Lane0|Q1 Lane1|Q1 Lane2|Q1 Lane3");
    QStringList ids, parts;
    for (const char *row :
         {"DVA-1 1 C2/I1 I2", "DVA-2 2 C2/I1 I2", "DVB-1 1 C2/I1 C1", "DVB-2 1 C2/I1 C1",
          "DVB-3 2 C2/I1 C1", "DVB-4 2 C2/I1 C1", "DVB-5 2 C2/I1 C1", "DVB-6 2 C2/I1 C1",
          "DVC-1 2 C2/I1 I2", "DVC-2 1 I2"}) {
        const QStringList f = QString(row).split(' ');
        parts << f[0];
        for (const QString &grade : f.mid(2)) {
            ids << f[0] + '-' + QString(grade).remove('/');
            const DEV::DeviceArg expected(ids.last(), f[0], grade, all.mid(0, 4 * f[1].toInt()));
            QCOMPARE(Core::IdeCore::deviceDataBase()->findDevice(ids.last()), expected);
            QVERIFY(expected != DEV::DeviceArg(ids.last(), f[0], grade, all.mid(4))
                    && !expected.isNull());
            QCOMPARE(DEV::DeviceDb({expected}).findDevice(ids.last()).condition(), grade);
        }
    }
    QStringList library;
    for (const DEV::DeviceArg &device : Core::IdeCore::deviceDataBase()->devices())
        library << device.id();
    QCOMPARE(library, ids);
    QVERIFY(Core::IdeCore::deviceDataBase()->findDevice("DVC-1").isNull());
    const QVariantMap descriptor =
        IPCore::processIPInfoSpec(QString(CPRI_PACKAGE_DIR "/cpri.ipspec"));
    const QStringList supported = descriptor.value("ipcore.device.supported").toStringList();
    QVERIFY(!supported.isEmpty());
    for (const QString &part : supported)
        QVERIFY2(parts.contains(part), qPrintable(part));
}

QTEST_MAIN(TestRegistry)
#include "tst_registry.moc"
