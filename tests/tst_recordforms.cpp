// The record's forms beside generation: the names of lanes, PLLs and
// reference clocks, the rate mask and index the rate boxes give, and the
// resource record handed to the host.

#include "testrecords.h"

#include <config/speedrules.h>
#include <generate/definefiles.h>
#include <plugin/cpri.h>
#include <serdes/resourcenames.h>

#include <ipserdes/message.h>
#include <ipserdes/serdes.h>

#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace TestRecords;
using IPCPRI::ConfigMap;
namespace Config = IPCPRI::Config;
namespace Serdes = IPCPRI::Serdes;

class TestRecordForms : public QObject
{
    Q_OBJECT

private slots:
    // Each lane's names, PLL keys and define line; names are matched exactly; the reference
    // clocks a device family offers.
    void laneForms()
    {
        for (int number = 0; number < 8; ++number) {
            const QString q = QString::number(number / 4), l = QString::number(number % 4);
            const QString name = QString("Q%1 Lane%2").arg(q, l);
            const Serdes::Lane *lane = Serdes::laneByDisplayName(name);
            QVERIFY(lane);
            const auto pll = [lane](const char *p) {
                return Serdes::pllKey(*lane, QString(p)).value_or("-");
            };
            const ConfigMap record = with({}, "Channel_Selection=" + name);
            QCOMPARE(
                QStringList({lane->key, lane->prefix, lane->quadName, lane->quadPrefix,
                             lane->cpllKey, Serdes::laneAccessName(name, true),
                             Serdes::laneAccessName(name, false), pll("QPLL0"), pll("QPLL1"),
                             pll("CPLL"), pll("qpll0"), pll(""),
                             IPCPRI::Generate::coreDefines(record).first()}),
                lines(QString("Q%1_LANE%2|q%1_ln%2|Q%1|q%1|Q%1_CPLL%2|Q%1_LANE%2_RX|Q%1_LANE%2_TX|"
                              "Q%1_QPLL0|Q%1_QPLL1|Q%1_CPLL%2|-|-|`define LANE_NUM %3")
                          .arg(q, l)
                          .arg(number)));
        }
        for (const char *name : {"", "q0 lane0", "Q0Lane0", "Q2 Lane0", "Q0_LANE0"})
            QVERIFY2(!Serdes::laneByDisplayName(QString(name)), name);
        QVERIFY(Config::keySpec("Line_Rate") && !Config::keySpec("Line_rate"));
        const QStringList others = lines("Q0 REFCLK0|Q0 REFCLK1|Q1 REFCLK0|Q1 REFCLK1");
        QCOMPARE(Serdes::offeredRefClocks("DVA-2"),
                 lines("Q0 REFCLK0|Q0 REFCLK1|Q0 REFCLK2|Q0 REFCLK3|Q0 REFIN0|Q0 REFIN1"));
        QCOMPARE(Serdes::offeredRefClocks("DVB-6"), lines("Q0 REFCLK0|Q0 REFCLK1|Q0 REFIN|MCLK"));
        QCOMPARE(Serdes::offeredRefClocks("DVC-1") + Serdes::offeredRefClocks("dva-1"),
                 others + others);
    }

    // Rate rows whose box is enabled and checked -> mask, highest rate index, line rate.
    void speedState()
    {
        for (const QString &row :
             lines("-> 000000000000 -1 0.00000Gbps|0 -> 000000000001 0 0.61440Gbps|"
                   "8 -> 000100000000 8 8.11008Gbps|10 -> 010000000000 10 12.16512Gbps|"
                   "6 8 -> 000101000000 6 9.83040Gbps|"
                   "0 1 2 3 4 5 6 7 8 9 10 11 -> 011101111111 10 12.16512Gbps")) {
            const QString on = row.section("->", 0, 0);
            QVector<bool> boxes(12);
            for (const QString &index : on.split(" ", Qt::SkipEmptyParts))
                boxes[index.toInt()] = true;
            const Config::SpeedState state = Config::speedState(boxes);
            QCOMPARE(QStringList({on + "->", state.mask, QString::number(state.highestIndex),
                                  Config::lineRateText(state.highest)})
                         .join(" "),
                     row);
            QCOMPARE(state.rates.size(), 11);
        }
        QStringList classes; // those that withdraw rates before moving a check to 1.2288 Gbps
        for (const Config::SpeedClass &c : Config::speedClasses())
            classes << c.key + (c.disableBeforeMove && !c.moveCheckFrom.isEmpty() ? " first" : "");
        QCOMPARE(classes, lines("3.072G_and_Under|6.144G_and_Under|9.8304G_and_Under first|"
                                "10.1376G_and_Under first|12.16512G_and_Under"));
    }

    // Changes to an empty record -> its resource record: core|instance|file|module, then the
    // PLLs, clocks, frequencies, lanes, rates and the two unused lists, each quoted.
    void resourceRecord()
    {
        QTemporaryDir work;
        IPSERDESIP::serdes::instance()->setWorkingDir(work.path());
        IPCPRI::cpri protocol(QString(CPRI_PACKAGE_DIR));
        QStringList settings, ignored, options;
        QString message; // generation leaves a record in the protocol object
        QVERIFY(protocol.loadDescriptor()
                && protocol.generate(away(), settings, ignored, options, message, false));
        for (const QString &row : fileLines(QString(CPRI_SOURCE_DIR "/tests/resources.txt"))) {
            const QString changes = row.section(" =>", 0, 0);
            std::unique_ptr<IPSERDESIP::Message> m(protocol.checkResources(with({}, changes)));
            QString fields = changes + " => " + m->coreName + "|" + m->instanceName + "|"
                             + m->fileValue + "|" + m->moduleValue;
            for (const QStringList &list : {m->pllList, m->refClockList, m->refFreqList,
                                            m->laneList, m->lineRates, m->auxList1, m->auxList2})
                fields += "|" + (list.isEmpty() ? "" : "'" + list.join("','") + "'");
            QCOMPARE(fields, row);
        }
        QCOMPARE(protocol.configuration(), away());
    }
};

QTEST_MAIN(TestRecordForms)
#include "tst_recordforms.moc"
