// What the dialog does while it is edited, calculated, accepted and loaded.

#include "dialogfixture.h"

#include <ipserdes/message.h>

#include <QGroupBox>
#include <QTest>

using namespace IPCPRI;

namespace {

// Clicks the named boxes in order, as a user would.
void click(QObject *d, std::initializer_list<const char *> names)
{
    for (const char *name : names)
        box(d, name)->click();
}

QVector<bool> enabledRates(QObject *d)
{
    QVector<bool> enabled;
    for (const char *name : {"speedEnable06144", "speedEnable12288", "speedEnable24576",
                             "speedEnable3072", "speedEnable49152", "speedEnable6144",
                             "speedEnable98304", "speedEnable811008", "speedEnable101376",
                             "speedEnable1216512"})
        enabled << box(d, name)->isEnabled();
    return enabled;
}

ConfigMap versionOnly()
{
    ConfigMap r;
    r.insert(QStringLiteral("version"), QStringLiteral("1.0"));
    return r;
}

} // namespace

class TestDialogBehaviour : public QObject
{
    Q_OBJECT

private slots:
    void rateClicksDeriveTheLineRate();
    void speedClassMovesAWithdrawnCheck_data();
    void speedClassMovesAWithdrawnCheck();
    void realTimeVendorAndEncodingFollowTheRate();
    void pllListFollowsTheRegistry_data();
    void pllListFollowsTheRegistry();
    void referenceFrequencyFollowsTheSource();
    void untouchedDialogCollectsDefaults();
    void maskedFieldsStoreWhatTheyShow();
    void calculationAsksTheBiasQuestionOnce_data();
    void calculationAsksTheBiasQuestionOnce();
    void calculationFailures_data();
    void calculationFailures();
    void acceptRefusals_data();
    void acceptRefusals();
    void declinedBiasIsNotPublished();
    void loadingAVersionOnlyRecord();
    void loadingRestoresTheSavedChoices();
    void loadingTakesTheQuadBiasFromTheRegistry();
    void figureFollowsTheChoices();
};

void TestDialogBehaviour::rateClicksDeriveTheLineRate()
{
    Project project;
    auto d = project.newDialog();
    CpriDialogProbe probe(d.get());
    QCOMPARE(probe.checkSpeed(), -1);
    QCOMPARE(edit(d.get(), "lineRate")->text(), QStringLiteral("0.00000Gbps"));
    click(d.get(), {"speedEnable1216512"});
    QCOMPARE(edit(d.get(), "lineRate")->text(), QStringLiteral("12.16512Gbps"));
    QCOMPARE(probe.speedBits(), QStringLiteral("010000000000"));
    click(d.get(), {"speedEnable811008"});
    QVERIFY(!box(d.get(), "speedEnable1216512")->isChecked());
    QCOMPARE(probe.checkSpeed(), 8);
    QCOMPARE(probe.speedBits(), QStringLiteral("000100000000"));
    QCOMPARE(edit(d.get(), "lineRate")->text(), QStringLiteral("8.11008Gbps"));
    // A checked box of the exclusive group cannot be unchecked.
    click(d.get(), {"speedEnable811008"});
    QVERIFY(box(d.get(), "speedEnable811008")->isChecked());
}

void TestDialogBehaviour::speedClassMovesAWithdrawnCheck_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QString>("rate");
    QTest::addColumn<QString>("speedClass");
    QTest::addColumn<QString>("checkedAfter");
    QTest::addColumn<QVector<bool>>("enabled"); // 0.6144 ... 12.16512
    QTest::newRow("10.1376 under 9.8304G")
        << "DVA-1-C2I1" << "speedEnable101376" << "speedSel98304" << "speedEnable12288"
        << QVector<bool>{false, true, true, true, true, true, true, false, false, false};
    QTest::newRow("2.4576 under 3.072G stays")
        << "DVA-1-C2I1" << "speedEnable24576" << "speedSel3072" << "speedEnable24576"
        << QVector<bool>{false, true, true, true, false, false, false, false, false, false};
    QTest::newRow("12.16512 under 10.1376G")
        << "DVA-1-C2I1" << "speedEnable1216512" << "speedSel101376" << "speedEnable12288"
        << QVector<bool>{false, true, true, true, true, true, true, true, true, false};
    QTest::newRow("12.16512G on another grade")
        << "DVB-4-C1" << "speedEnable811008" << "speedSel1216512" << "speedEnable811008"
        << QVector<bool>{false, true, true, true, true, true, true, true, false, false};
}

void TestDialogBehaviour::speedClassMovesAWithdrawnCheck()
{
    QFETCH(QString, device);
    QFETCH(QString, rate);
    QFETCH(QString, speedClass);
    QFETCH(QString, checkedAfter);
    QFETCH(QVector<bool>, enabled);
    Project project(device);
    auto d = project.newDialog();
    box(d.get(), rate.toLatin1().constData())->click();
    box(d.get(), speedClass.toLatin1().constData())->click();
    QVERIFY(box(d.get(), checkedAfter.toLatin1().constData())->isChecked());
    QCOMPARE(enabledRates(d.get()), enabled);
}

void TestDialogBehaviour::realTimeVendorAndEncodingFollowTheRate()
{
    Project project;
    auto d = project.newDialog();
    auto *encoding = widget<QGroupBox>(d.get(), "groupBoxEncodingAndDecoding");
    QVERIFY(encoding->isHidden());
    click(d.get(), {"speedEnable101376"});
    QVERIFY(box(d.get(), "RealTimeVendor")->isEnabled());
    QVERIFY(!encoding->isHidden() && encoding->isEnabled());
    box(d.get(), "RealTimeVendor")->setChecked(true);
    click(d.get(), {"speedEnable49152"});
    QVERIFY(!box(d.get(), "RealTimeVendor")->isEnabled());
    QVERIFY(encoding->isHidden());
    CpriDialogProbe(d.get()).collect();
    QCOMPARE(project.record.value(QStringLiteral("Real_Time_Vendor")).toBool(), false);
    QVERIFY(!project.record.contains(QStringLiteral("64B_66B_Mode")));
    click(d.get(), {"speedEnable811008"});
    CpriDialogProbe(d.get()).collect();
    QCOMPARE(project.record.value(QStringLiteral("64B_66B_Mode")).toString(), QStringLiteral("SerDes"));
}

void TestDialogBehaviour::pllListFollowsTheRegistry_data()
{
    QTest::addColumn<QStringList>("enabledPlls"); // set up by other cores for 9.8304 Gbps
    QTest::addColumn<QString>("rate");
    QTest::addColumn<QStringList>("offered");
    QTest::newRow("all free") << QStringList() << "speedEnable98304"
                              << QStringList{QStringLiteral("QPLL0"), QStringLiteral("QPLL1"), QStringLiteral("CPLL")};
    QTest::newRow("QPLL1 set up for another rate")
        << QStringList{QStringLiteral("Q0_QPLL1")} << "speedEnable6144"
        << QStringList{QStringLiteral("QPLL0"), QStringLiteral("CPLL")};
    QTest::newRow("both set up for the rate")
        << QStringList{QStringLiteral("Q0_QPLL0"), QStringLiteral("Q0_QPLL1")} << "speedEnable49152"
        << QStringList{QStringLiteral("QPLL0"), QStringLiteral("QPLL1"), QStringLiteral("CPLL")};
    QTest::newRow("other quad's PLLs do not count")
        << QStringList{QStringLiteral("Q1_QPLL0")} << "speedEnable6144"
        << QStringList{QStringLiteral("QPLL0"), QStringLiteral("QPLL1"), QStringLiteral("CPLL")};
}

void TestDialogBehaviour::pllListFollowsTheRegistry()
{
    QFETCH(QStringList, enabledPlls);
    QFETCH(QString, rate);
    QFETCH(QStringList, offered);
    Project project(QStringLiteral("DVC-1-C2I1"));
    for (const QString &pll : enabledPlls)
        QVERIFY(IPSERDESIP::serdes::instance()->enablePll(pll, 9.8304));
    auto d = project.newDialog();
    combo(d.get(), "ChannelSel")->setCurrentText(QStringLiteral("Q0 Lane3"));
    box(d.get(), rate.toLatin1().constData())->click();
    QCOMPARE(items(combo(d.get(), "PLL_Selection")), offered);
}

void TestDialogBehaviour::referenceFrequencyFollowsTheSource()
{
    Project project;
    QVERIFY(IPSERDESIP::serdes::instance()->fixReference(QStringLiteral("Q0 REFCLK1"), 245.76));
    auto d = project.newDialog();
    QComboBox *source = combo(d.get(), "refClkSource");
    QLineEdit *frequency = edit(d.get(), "refClkFreq");
    source->setCurrentText(QStringLiteral("Q0 REFCLK1"));
    QCOMPARE(frequency->text(), QStringLiteral("245.76"));
    QVERIFY(!frequency->isEnabled());
    source->setCurrentText(QStringLiteral("Q0 REFCLK0"));
    QCOMPARE(frequency->text(), QStringLiteral("122.880"));
    QVERIFY(frequency->isEnabled());
}

void TestDialogBehaviour::untouchedDialogCollectsDefaults()
{
    Project project;
    auto d = project.newDialog();
    CpriDialogProbe probe(d.get());
    QVERIFY(probe.collect());
    const ConfigMap &r = project.record;
    QCOMPARE(r.value(QStringLiteral("target_device")).toString(), QStringLiteral("DVA-1-C2I1"));
    QCOMPARE(r.value(QStringLiteral("version")).toString(), QStringLiteral("1.0"));
    QCOMPARE(r.value(QStringLiteral("MII")).toBool(), true);
    QCOMPARE(r.value(QStringLiteral("Master")).toBool(), false);
    QCOMPARE(r.value(QStringLiteral("Initial_Protocol_Version1")).toBool(), true);
    QCOMPARE(r.value(QStringLiteral("Initial_HDLC_Byte")).toString(), QStringLiteral("0"));
    QCOMPARE(r.value(QStringLiteral("Initial_HDLC_Mask")).toString(), QStringLiteral("0000"));
    QCOMPARE(r.value(QStringLiteral("FFE_C0")).toString(), QStringLiteral("40"));
    QCOMPARE(r.value(QStringLiteral("ATT")).toInt(), 7);
    QCOMPARE(r.value(QStringLiteral("BOOST")).toInt(), 9);
    QCOMPARE(r.value(QStringLiteral("Line_Rate")).toString(), QStringLiteral("0.00000Gbps"));
    QCOMPARE(r.value(QStringLiteral("highest_SpeedIndex")).toInt(), -1);
    QCOMPARE(r.value(QStringLiteral("speedEnables_Record")).toString(), QStringLiteral("000000000000"));
    QCOMPARE(r.value(QStringLiteral("Channel_Selection")).toString(), QStringLiteral("Q0 Lane0"));
    QVERIFY(!r.contains(QStringLiteral("ifChangedAllOfBias")));
    QCOMPARE(r.size(), Config::recordKeys().size() - 2); // no 64B/66B, no bias decision
    for (const Config::KeySpec &row : Config::recordKeys()) {
        if (r.contains(row.key) && row.type != Config::ValueType::Text)
            QCOMPARE(r.value(row.key).type(), row.initial.type());
    }
    QCOMPARE(probe.routeLanes(), QStringList{QStringLiteral("Q0_LANE0")});
    QCOMPARE(probe.routePlls(), QStringList{QStringLiteral("Q0_QPLL0")});
    const QStringList settings = probe.settings();
    QCOMPARE(settings.size(), 24 + 2);
    QCOMPARE(settings.at(24), QStringLiteral("q0_refclk0_freq 122.88"));
    QCOMPARE(settings.at(25), QStringLiteral("q0_global_reset_en true"));
}

void TestDialogBehaviour::maskedFieldsStoreWhatTheyShow()
{
    Project project;
    auto d = project.newDialog();
    QLineEdit *seed = edit(d.get(), "ScramblerSeed");
    seed->selectAll();
    QTest::keyClicks(seed, QStringLiteral("1F"));
    CpriDialogProbe(d.get()).collect();
    QCOMPARE(project.record.value(QStringLiteral("Initial_Scrambler_Seed")).toString(),
             QStringLiteral("1F000000"));
    seed->setText(QStringLiteral("80000000"));
    QMetaObject::invokeMethod(d.get(), "checkLineEditInPut");
    QCOMPARE(seed->displayText(), QStringLiteral("00000000"));
}

void TestDialogBehaviour::calculationAsksTheBiasQuestionOnce_data()
{
    QTest::addColumn<int>("answer");
    QTest::addColumn<int>("biasLines");
    QTest::newRow("yes") << int(QMessageBox::Yes) << 1;
    QTest::newRow("no") << int(QMessageBox::No) << 0;
}

void TestDialogBehaviour::calculationAsksTheBiasQuestionOnce()
{
    QFETCH(int, answer);
    QFETCH(int, biasLines);
    Project project(QStringLiteral("DVC-1-C2I1"));
    auto d = project.newDialog();
    combo(d.get(), "ChannelSel")->setCurrentText(QStringLiteral("Q1 Lane2"));
    click(d.get(), {"speedSel98304", "speedEnable98304"});
    CpriHost::ModalDriver driver;
    driver.setAnswer(QMessageBox::StandardButton(answer));
    driver.start();
    CpriDialogProbe probe(d.get());
    for (int run = 0; run < 2; ++run) {
        QVERIFY(probe.calculate(true));
        QCOMPARE(probe.settings().count(QStringLiteral("q1_rx_eq_bias 7")), biasLines);
    }
    const QStringList seen = titles(driver.seenBoxes());
    QCOMPARE(seen.size(), 3);
    QCOMPARE(seen.first(), QStringLiteral("Question: Q1 Lane0, Q1 Lane1, Q1 Lane3 BIAS will also be "
                                          "changed to 7, whether to accept or not? "));
    QCOMPARE(seen.at(1), QStringLiteral("Succeed: Succeed"));
    QCOMPARE(probe.biasFlag(), answer == QMessageBox::Yes ? 1 : 2);
    const void *generator = probe.generator();
    QVERIFY(generator);
    probe.calculate(false);
    QCOMPARE(probe.generator(), generator);
    QVERIFY(QFileInfo::exists(project.work.path() + QStringLiteral("/cpri_0/temp/cpri/cpri.csr")));

    // A new lane needs a new decision.
    combo(d.get(), "ChannelSel")->setCurrentText(QStringLiteral("Q1 Lane0"));
    QCOMPARE(probe.biasFlag(), 0);
}

void TestDialogBehaviour::calculationFailures_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("frequency");
    QTest::addColumn<QString>("rate");
    QTest::addColumn<QString>("pll");
    QTest::addColumn<QString>("message");
    const QString refMessage = QStringLiteral(
        "Failure: The Expected Reference Clock Pin can not be connected to the Expected PLL");
    QTest::newRow("source in use at another frequency")
        << "Q0 REFCLK1" << "125" << "speedEnable98304" << "QPLL0" << refMessage;
    QTest::newRow("source does not reach the lane")
        << "Q1 REFCLK2" << "122.880" << "speedEnable98304" << "QPLL0" << refMessage;
    QTest::newRow("rate out of reach")
        << "Q0 REFCLK0" << "122.880" << "speedEnable98304" << "CPLL"
        << QStringLiteral("Failure: The Expected Line Rate can not be generated by the Reference "
                          "Clock Frequency");
}

void TestDialogBehaviour::calculationFailures()
{
    QFETCH(QString, source);
    QFETCH(QString, frequency);
    QFETCH(QString, rate);
    QFETCH(QString, pll);
    QFETCH(QString, message);
    Project project(QStringLiteral("DVC-2-I2")); // quad 0 only
    QVERIFY(IPSERDESIP::serdes::instance()->fixReference(QStringLiteral("Q0 REFCLK1"), 122.88));
    auto d = project.newDialog();
    CpriDialogProbe probe(d.get());
    probe.setBiasFlag(2);
    combo(d.get(), "refClkSource")->addItem(QStringLiteral("Q1 REFCLK2")); // a stored choice
    combo(d.get(), "refClkSource")->setCurrentText(source);
    edit(d.get(), "refClkFreq")->setText(frequency);
    box(d.get(), rate.toLatin1().constData())->click();
    combo(d.get(), "PLL_Selection")->setCurrentText(pll);
    CpriHost::ModalDriver driver;
    driver.start();
    QVERIFY(!probe.calculate(true));
    QCOMPARE(titles(driver.seenBoxes()), QStringList{message});
    QVERIFY(IPSERDESIP::serdes::instance()->pendingRoutes().isEmpty());
}

void TestDialogBehaviour::acceptRefusals_data()
{
    QTest::addColumn<bool>("freeLanes");
    QTest::addColumn<QStringList>("clicks");
    QTest::addColumn<QString>("message");
    QTest::newRow("no lane comes first") << false << QStringList() << "Error: No available lanes";
    QTest::newRow("no rate") << true << QStringList{QStringLiteral("speedSel3072")}
                             << "Error: Please Enable Speed";
    QTest::newRow("no class") << true << QStringList{QStringLiteral("speedEnable3072")}
                              << "Error: Please Select Speed Selection";
}

void TestDialogBehaviour::acceptRefusals()
{
    QFETCH(bool, freeLanes);
    QFETCH(QStringList, clicks);
    QFETCH(QString, message);
    Project project;
    if (!freeLanes) {
        for (const QString &lane : IPSERDESIP::serdes::instance()->notOccupiedLanes())
            IPSERDESIP::serdes::instance()->occupyLane(lane);
    }
    auto d = project.newDialog();
    for (const QString &name : clicks)
        box(d.get(), name.toLatin1().constData())->click();
    CpriHost::ModalDriver driver;
    driver.setAnswer(QMessageBox::Ok);
    driver.start();
    d->accept();
    QCOMPARE(titles(driver.seenBoxes()), QStringList{message});
    QCOMPARE(d->result(), int(QDialog::Rejected));
    QVERIFY(project.record.isEmpty());
}

void TestDialogBehaviour::declinedBiasIsNotPublished()
{
    Project project;
    auto d = project.newDialog();
    click(d.get(), {"speedSel6144", "speedEnable6144"});
    CpriHost::ModalDriver driver;
    driver.setAnswer(QMessageBox::No);
    driver.start();
    d->accept();
    QCOMPARE(d->result(), int(QDialog::Accepted));
    QCOMPARE(project.record.value(QStringLiteral("ifChangedAllOfBias")), QVariant(false));
    QVERIFY(!IPSERDESIP::serdes::instance()->globalData().contains(QStringLiteral("Q0_BIAS")));
    QCOMPARE(titles(driver.seenBoxes()).size(), 1); // the question; no "Succeed" on accept
}

void TestDialogBehaviour::loadingAVersionOnlyRecord()
{
    Project project;
    auto d = std::make_unique<cpridlg>(Project::descriptor(), &project.record, nullptr);
    QVERIFY(d->setOpening(versionOnly()));
    for (const char *name : {"speedSel3072", "speedEnable12288", "speedEnable1216512", "GMII",
                             "checkBoxDRPPort", "checkBoxBIASPorts"})
        QVERIFY2(!widget<QAbstractButton>(d.get(), name)->isChecked(), name);
    QVERIFY(widget<QAbstractButton>(d.get(), "MII")->isChecked());
    QVERIFY(widget<QAbstractButton>(d.get(), "ProtocolVersion1")->isChecked());
    QCOMPARE(edit(d.get(), "ConfigClkPeriod")->text(), QStringLiteral("50"));
    QCOMPARE(combo(d.get(), "ChannelSel")->currentText(), QStringLiteral("Q0 Lane0"));
    QCOMPARE(edit(d.get(), "lineRate")->text(), QStringLiteral("4.9152"));
    QCOMPARE(combo(d.get(), "refClkSource")->currentText(), QStringLiteral("Q0 REFCLK0"));
    QCOMPARE(edit(d.get(), "refClkFreq")->text(), QStringLiteral("122.880"));
    QCOMPARE(combo(d.get(), "LoopbackMode")->currentText(), QStringLiteral("OFF"));
    QCOMPARE(combo(d.get(), "comboBox64B_66B_Mode")->currentText(), QStringLiteral("SerDes"));
    QCOMPARE(combo(d.get(), "differeSwingComboBox")->currentText(), QStringLiteral("900mV"));
    QCOMPARE(widget<QLabel>(d.get(), "c0Lael")->text(), QStringLiteral("40"));
    QCOMPARE(spin(d.get(), "attSpinBox")->value(), 7);
    QCOMPARE(CpriDialogProbe(d.get()).biasFlag(), 0);
}

void TestDialogBehaviour::loadingRestoresTheSavedChoices()
{
    Project project(QStringLiteral("DVC-1-C2I1"));
    ConfigMap saved = versionOnly();
    saved.insert(QStringLiteral("12.16512G_and_Under"), true);
    saved.insert(QStringLiteral("10.1376Gbps"), true);
    saved.insert(QStringLiteral("Channel_Selection"), QStringLiteral("Q1 Lane1"));
    saved.insert(QStringLiteral("Line_Rate"), QStringLiteral("10.13760Gbps"));
    saved.insert(QStringLiteral("PLL_Selection"), QStringLiteral("CPLL"));
    saved.insert(QStringLiteral("64B_66B_Mode"), QStringLiteral("Fabric"));
    saved.insert(QStringLiteral("FFEMODE"), QStringLiteral("Manual"));
    saved.insert(QStringLiteral("FFE_CM"), 5);
    saved.insert(QStringLiteral("FFE_C1"), 6);
    saved.insert(QStringLiteral("FFE_C0"), QStringLiteral("29"));
    saved.insert(QStringLiteral("SD_THRESHOLD"), QStringLiteral("150mV"));
    saved.insert(QStringLiteral("Initial_Ethernet_Pointer"), QStringLiteral("3F"));
    saved.insert(QStringLiteral("ifChangedAllOfBias"), false);
    saved.insert(QStringLiteral("FFE_Ports"), true);
    auto d = std::make_unique<cpridlg>(Project::descriptor(), &project.record, nullptr);
    QVERIFY(d->setOpening(saved));
    QVERIFY(box(d.get(), "speedSel1216512")->isChecked());
    QVERIFY(box(d.get(), "speedEnable101376")->isChecked());
    QVERIFY(box(d.get(), "RealTimeVendor")->isEnabled());
    QCOMPARE(combo(d.get(), "ChannelSel")->currentText(), QStringLiteral("Q1 Lane1"));
    QCOMPARE(combo(d.get(), "PLL_Selection")->currentText(), QStringLiteral("CPLL"));
    QCOMPARE(combo(d.get(), "comboBox64B_66B_Mode")->currentText(), QStringLiteral("Fabric"));
    QVERIFY(spin(d.get(), "cmSpinBox")->isEnabled());
    QCOMPARE(spin(d.get(), "c1SpinBox")->value(), 6);
    QCOMPARE(widget<QLabel>(d.get(), "c0Lael")->text(), QStringLiteral("29"));
    QCOMPARE(combo(d.get(), "sdThresholdComboBox")->currentText(), QStringLiteral("150mV"));
    QCOMPARE(edit(d.get(), "EthernetPointer")->displayText(), QStringLiteral("3F"));
    QVERIFY(box(d.get(), "checkBoxFFEPorts")->isChecked());
    QCOMPARE(CpriDialogProbe(d.get()).biasFlag(), 2);
    QCOMPARE(d->fileName(), QStringLiteral("cpri_0"));
}

void TestDialogBehaviour::loadingTakesTheQuadBiasFromTheRegistry()
{
    Project project(QStringLiteral("DVC-1-C2I1"));
    IPSERDESIP::serdes::instance()->setData(QStringLiteral("Q1_BIAS"), 12);
    IPSERDESIP::serdes::instance()->occupyLane(QStringLiteral("Q0 Lane2"));
    ConfigMap saved = versionOnly();
    saved.insert(QStringLiteral("Channel_Selection"), QStringLiteral("Q1 Lane0"));
    saved.insert(QStringLiteral("ifChangedAllOfBias"), true);
    auto d = std::make_unique<cpridlg>(Project::descriptor(), &project.record, nullptr);
    QVERIFY(d->setOpening(saved));
    QCOMPARE(spin(d.get(), "biasSpinBox")->value(), 12);
    QCOMPARE(CpriDialogProbe(d.get()).biasFlag(), 1);

    // A lane another core took meanwhile is not offered: the first free lane stays.
    saved.insert(QStringLiteral("Channel_Selection"), QStringLiteral("Q0 Lane2"));
    auto e = std::make_unique<cpridlg>(Project::descriptor(), &project.record, nullptr);
    QVERIFY(e->setOpening(saved));
    QCOMPARE(combo(e.get(), "ChannelSel")->currentText(), QStringLiteral("Q0 Lane0"));
}

void TestDialogBehaviour::figureFollowsTheChoices()
{
    Project project;
    auto d = project.newDialog();
    const auto pinNames = [&d] {
        QStringList names;
        for (const Utils::PinFigure &pin : d->figurePins())
            names << pin.name;
        return names;
    };
    QVERIFY(!pinNames().contains(QStringLiteral("aux_tx_slot_num_o[5:0]")));
    QVERIFY(pinNames().contains(QStringLiteral("mii_tx_clk_i")));
    click(d.get(), {"speedSel1216512"});
    QVERIFY(pinNames().contains(QStringLiteral("aux_tx_slot_num_o[6:0]")));
    box(d.get(), "checkBoxDRPPort")->setChecked(true);
    QCOMPARE(pinNames().last(), QStringLiteral("user_drp_resp_o"));
    widget<QAbstractButton>(d.get(), "GMII")->click();
    QVERIFY(pinNames().contains(QStringLiteral("gmii_tx_clk_i")));
    QVERIFY(!pinNames().contains(QStringLiteral("mii_tx_clk_i")));
}

QTEST_MAIN(TestDialogBehaviour)
#include "tst_dialogbehaviour.moc"
