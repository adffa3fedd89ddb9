// Lane, PLL, reference-clock and family names and the rules between them.

#include <serdes/resourcenames.h>

#include <QTest>

using namespace IPCPRI::Serdes;

class TestResourceNames : public QObject
{
    Q_OBJECT

private slots:
    void laneForms_data();
    void laneForms();
    void unknownLanesMapToNothing_data();
    void unknownLanesMapToNothing();
    void pllKeys_data();
    void pllKeys();
    void frequencyLines_data();
    void frequencyLines();
    void familyMembershipIsExact_data();
    void familyMembershipIsExact();
};

void TestResourceNames::laneForms_data()
{
    QTest::addColumn<QString>("display");
    QTest::addColumn<QStringList>("forms"); // key, prefix, quad, quad prefix, CPLL, RX, TX
    for (int quad = 0; quad < 2; ++quad) {
        for (int lane = 0; lane < 4; ++lane) {
            const QString q = QString::number(quad);
            const QString l = QString::number(lane);
            QTest::newRow(qPrintable(QStringLiteral("Q%1 Lane%2").arg(q, l)))
                << QStringLiteral("Q%1 Lane%2").arg(q, l)
                << QStringList{QStringLiteral("Q%1_LANE%2").arg(q, l),
                               QStringLiteral("q%1_ln%2").arg(q, l), QStringLiteral("Q") + q,
                               QStringLiteral("q") + q, QStringLiteral("Q%1_CPLL%2").arg(q, l),
                               QStringLiteral("Q%1_LANE%2_RX").arg(q, l),
                               QStringLiteral("Q%1_LANE%2_TX").arg(q, l)};
        }
    }
}

void TestResourceNames::laneForms()
{
    QFETCH(QString, display);
    QFETCH(QStringList, forms);
    const Lane *lane = laneByDisplayName(display);
    QVERIFY(lane);
    QCOMPARE(QStringList({lane->key, lane->prefix, lane->quadName, lane->quadPrefix,
                          lane->cpllKey, laneAccessName(display, true),
                          laneAccessName(display, false)}),
             forms);
}

void TestResourceNames::unknownLanesMapToNothing_data()
{
    QTest::addColumn<QString>("display");
    QTest::newRow("empty") << QString();
    QTest::newRow("lower case") << QStringLiteral("q0 lane0");
    QTest::newRow("no blank") << QStringLiteral("Q0Lane0");
    QTest::newRow("third quad") << QStringLiteral("Q2 Lane0");
    QTest::newRow("lane key") << QStringLiteral("Q0_LANE0");
}

void TestResourceNames::unknownLanesMapToNothing()
{
    QFETCH(QString, display);
    QVERIFY(!laneByDisplayName(display));
}

void TestResourceNames::pllKeys_data()
{
    QTest::addColumn<QString>("lane");
    QTest::addColumn<QString>("pll");
    QTest::addColumn<QString>("key"); // empty: no key
    for (const Lane &lane : lanes()) {
        const QString q = lane.quadName;
        const QByteArray row = lane.displayName.toLatin1();
        QTest::newRow(row + " QPLL0") << lane.displayName << "QPLL0" << q + QStringLiteral("_QPLL0");
        QTest::newRow(row + " QPLL1") << lane.displayName << "QPLL1" << q + QStringLiteral("_QPLL1");
        QTest::newRow(row + " CPLL") << lane.displayName << "CPLL" << lane.cpllKey;
    }
    QTest::newRow("lower case") << "Q0 Lane0" << "qpll0" << QString();
    QTest::newRow("empty") << "Q1 Lane2" << "" << QString();
}

void TestResourceNames::pllKeys()
{
    QFETCH(QString, lane);
    QFETCH(QString, pll);
    QFETCH(QString, key);
    const std::optional<QString> mapped = pllKey(*laneByDisplayName(lane), pll);
    QCOMPARE(mapped.value_or(QString()), key);
    QCOMPARE(mapped.has_value(), !key.isEmpty());
}

void TestResourceNames::frequencyLines_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("frequency");
    QTest::addColumn<QString>("line");
    QTest::newRow("trailing zero dropped") << "Q0 REFCLK0" << "122.880" << "q0_refclk0_freq 122.88";
    QTest::newRow("integer") << "Q1 REFCLK1" << "100" << "q1_refclk1_freq 100";
    QTest::newRow("six digits") << "Q0 REFCLK3" << "156.250001" << "q0_refclk3_freq 156.25";
    QTest::newRow("refin") << "Q0 REFIN1" << "245.76" << "q0_gpio1_freq 245.76";
    QTest::newRow("refin2 only mapped") << "Q0 REFIN2" << "125" << "q0_gpio2_freq 125";
    QTest::newRow("refin3 only mapped") << "Q0 REFIN3" << "125" << "q0_gpio3_freq 125";
    QTest::newRow("shared refin") << "Q0 REFIN" << "156.25" << "q0_gpio_freq 156.25";
    QTest::newRow("mclk") << "MCLK" << "61.44" << "mclk_freq 61.44";
    QTest::newRow("not a number") << "Q0 REFCLK1" << "abc" << "q0_refclk1_freq 0";
    QTest::newRow("unknown source") << "Q1 REFCLK2" << "122.88" << QString();
    QTest::newRow("case differs") << "mclk" << "122.88" << QString();
}

void TestResourceNames::frequencyLines()
{
    QFETCH(QString, source);
    QFETCH(QString, frequency);
    QFETCH(QString, line);
    QCOMPARE(frequencyLine(source, frequency).value_or(QString()), line);
}

void TestResourceNames::familyMembershipIsExact_data()
{
    QTest::addColumn<QString>("family");
    QTest::addColumn<QString>("part");
    QTest::addColumn<bool>("member");
    QTest::newRow("first") << FirstFamily << "DVA-2" << true;
    QTest::newRow("first, not second") << FirstFamily << "DVB-1" << false;
    QTest::newRow("second") << SecondFamily << "DVB-6" << true;
    QTest::newRow("prefix only") << SecondFamily << "DVB" << false;
    QTest::newRow("lower case") << BothFamilies << "dva-1" << false;
    QTest::newRow("both") << BothFamilies << "DVB-3" << true;
    QTest::newRow("empty part") << BothFamilies << "" << false;
}

void TestResourceNames::familyMembershipIsExact()
{
    QFETCH(QString, family);
    QFETCH(QString, part);
    QFETCH(bool, member);
    QCOMPARE(inFamily(family, part), member);
}

QTEST_MAIN(TestResourceNames)
#include "tst_resourcenames.moc"
