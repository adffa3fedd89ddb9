// The dialog shell, its preparation for a device and the create and edit
// flows of the protocol object.

#include "dialogfixture.h"

#include <plugin/cpri.h>

#include <QGroupBox>
#include <QMetaMethod>
#include <QRegExpValidator>
#include <QTabWidget>
#include <QTest>

using namespace IPCPRI;

class TestDialog : public QObject
{
    Q_OBJECT

private slots:
    void emptyDescriptorGivesEmptyFrame();
    void slotTable();
    void prepareForDevice_data();
    void prepareForDevice();
    void fixedListsAndModes();
    void inputRules_data();
    void inputRules();
    void noFreeLaneLeavesOnlyCpll();
    void createCancelledGivesEmptyRecord();
    void createAcceptedGivesTheCollectedRecord();
    void refusedRecordNeverShowsTheDialog();
    void successiveDialogsShareNothing();
};

void TestDialog::emptyDescriptorGivesEmptyFrame()
{
    Project project;
    auto dialog = std::make_unique<cpridlg>(QMap<QString, QVariant>(), &project.record, nullptr);
    dialog->setCreating(QString(), project.device);
    QCOMPARE(dialog->fileName(), QString());
    QCOMPARE(dialog->moduleName(), QString());
    auto *tabs = dialog->findChild<QTabWidget *>();
    QVERIFY(tabs);
    QStringList names;
    for (int i = 0; i < tabs->count(); ++i)
        names << tabs->tabText(i);
    QCOMPARE(names, QStringList({QStringLiteral("CPRI Core Configuration"),
                                 QStringLiteral("PHY Configuration"),
                                 QStringLiteral("AFE Configuration"),
                                 QStringLiteral("Optional Ports Configuration")}));
    CpriDialogProbe probe(dialog.get());
    QVERIFY(!probe.hasGenerator());

    auto full = project.newDialog();
    QCOMPARE(full->fileName(), QStringLiteral("cpri_0"));
    QCOMPARE(full->moduleName(), QStringLiteral("cpri_top"));
}

void TestDialog::slotTable()
{
    const QStringList expected = {
        QStringLiteral("accept()"), QStringLiteral("refreshFigure()"),
        QStringLiteral("updatedRefClkFreq()"), QStringLiteral("updatePLLSel()"),
        QStringLiteral("updateLaneConect()"), QStringLiteral("checkSpeedEnable()"),
        QStringLiteral("updateRealTimeVendor()"), QStringLiteral("updateEncodingAndDecoding()"),
        QStringLiteral("checkClkPeriod()"), QStringLiteral("checkRefClkFreq()"),
        QStringLiteral("onButtonCalculateClicked(bool)"), QStringLiteral("onButtonCalculateClicked()"),
        QStringLiteral("checkLineEditInPut()"), QStringLiteral("updatedSpeedEnable()"),
        QStringLiteral("calculateFFE_C0()"), QStringLiteral("onFFEModeChanged()"),
        QStringLiteral("onEqualizationModeChanged()"), QStringLiteral("resetFlagforBias()"),
        QStringLiteral("updateBiasDefaultValue()"),
    };
    const QMetaObject &meta = cpridlg::staticMetaObject;
    QCOMPARE(QString::fromLatin1(meta.className()), QStringLiteral("IPCPRI::cpridlg"));
    QCOMPARE(meta.methodCount() - meta.methodOffset(), expected.size());
    for (int i = 0; i < expected.size(); ++i) {
        const QMetaMethod method = meta.method(meta.methodOffset() + i);
        QCOMPARE(QString::fromLatin1(method.methodSignature()), expected.at(i));
        QCOMPARE(method.methodType(), QMetaMethod::Slot);
        QCOMPARE(method.access(), i == 0 ? QMetaMethod::Public : QMetaMethod::Private);
    }
    const auto returns = [&](int i) {
        return QString::fromLatin1(meta.method(meta.methodOffset() + i).typeName());
    };
    QCOMPARE(returns(5), QStringLiteral("int"));
    QCOMPARE(returns(10), QStringLiteral("bool"));
    QCOMPARE(returns(11), QStringLiteral("bool"));
    QCOMPARE(returns(14), QStringLiteral("bool"));
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
}

void TestDialog::prepareForDevice_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QStringList>("sources");
    QTest::addColumn<bool>("topRates");
    QTest::addColumn<QStringList>("lanes");
    const QStringList quad0 = {QStringLiteral("Q0 Lane0"), QStringLiteral("Q0 Lane1"),
                               QStringLiteral("Q0 Lane2"), QStringLiteral("Q0 Lane3")};
    const QStringList quads = quad0 + QStringList{QStringLiteral("Q1 Lane0"), QStringLiteral("Q1 Lane1"),
                                                  QStringLiteral("Q1 Lane2"), QStringLiteral("Q1 Lane3")};
    QTest::newRow("first family, top grade")
        << "DVA-1-C2I1"
        << QStringList{QStringLiteral("Q0 REFCLK0"), QStringLiteral("Q0 REFCLK1"), QStringLiteral("Q0 REFCLK2"),
                       QStringLiteral("Q0 REFCLK3"), QStringLiteral("Q0 REFIN0"), QStringLiteral("Q0 REFIN1")}
        << true << quad0;
    QTest::newRow("second family, other grade")
        << "DVB-4-C1"
        << QStringList{QStringLiteral("Q0 REFCLK0"), QStringLiteral("Q0 REFCLK1"), QStringLiteral("Q0 REFIN"),
                       QStringLiteral("MCLK")}
        << false << quads;
    QTest::newRow("other device")
        << "DVC-1-C2I1"
        << QStringList{QStringLiteral("Q0 REFCLK0"), QStringLiteral("Q0 REFCLK1"), QStringLiteral("Q1 REFCLK0"),
                       QStringLiteral("Q1 REFCLK1")}
        << true << quads;
}

void TestDialog::prepareForDevice()
{
    QFETCH(QString, device);
    QFETCH(QStringList, sources);
    QFETCH(bool, topRates);
    QFETCH(QStringList, lanes);
    Project project(device);
    auto d = project.newDialog();
    QCOMPARE(items(combo(d.get(), "refClkSource")), sources);
    QCOMPARE(combo(d.get(), "refClkSource")->currentText(), QStringLiteral("Q0 REFCLK0"));
    QCOMPARE(combo(d.get(), "refClkSource")->itemData(2).toInt(), 2);
    QVERIFY(!box(d.get(), "speedEnable06144")->isEnabled());
    QVERIFY(box(d.get(), "speedEnable811008")->isEnabled());
    QCOMPARE(box(d.get(), "speedEnable101376")->isEnabled(), topRates);
    QCOMPARE(box(d.get(), "speedEnable1216512")->isEnabled(), topRates);
    QCOMPARE(items(combo(d.get(), "ChannelSel")), lanes);
    QCOMPARE(CpriDialogProbe(d.get()).freeLaneCount(), lanes.size());
    QCOMPARE(items(combo(d.get(), "PLL_Selection")),
             QStringList({QStringLiteral("QPLL0"), QStringLiteral("QPLL1"), QStringLiteral("CPLL")}));
    QCOMPARE(edit(d.get(), "lineRate")->text(), QStringLiteral("0Gbps"));
    QVERIFY(!edit(d.get(), "lineRate")->isEnabled());
    QCOMPARE(edit(d.get(), "refClkFreq")->text(), QStringLiteral("122.880"));
    QVERIFY(!box(d.get(), "RealTimeVendor")->isEnabled());
    QCOMPARE(CpriDialogProbe(d.get()).biasFlag(), 0);
}

void TestDialog::fixedListsAndModes()
{
    Project project;
    auto d = project.newDialog();
    QComboBox *swing = combo(d.get(), "differeSwingComboBox");
    QCOMPARE(swing->count(), 16);
    QCOMPARE(swing->itemText(0), QStringLiteral("180mV"));
    QCOMPARE(swing->itemText(1), QStringLiteral("228mV"));
    QCOMPARE(swing->currentText(), QStringLiteral("900mV"));
    QCOMPARE(items(combo(d.get(), "sdThresholdComboBox")),
             QStringList({QStringLiteral("25mV"), QStringLiteral("50mV"), QStringLiteral("75mV"),
                          QStringLiteral("100mV"), QStringLiteral("125mV"), QStringLiteral("150mV"),
                          QStringLiteral("175mV"), QStringLiteral("200mV")}));
    QCOMPARE(combo(d.get(), "sdThresholdComboBox")->currentText(), QStringLiteral("100mV"));
    QCOMPARE(items(combo(d.get(), "LoopbackMode")),
             QStringList({QStringLiteral("OFF"), QStringLiteral("LB_NES"), QStringLiteral("LB_FES"),
                          QStringLiteral("LB_ENC")}));
    for (const char *name : {"cmSpinBox", "c1SpinBox", "attSpinBox", "boostSpinBox"})
        QVERIFY2(!spin(d.get(), name)->isEnabled(), name);
    QCOMPARE(spin(d.get(), "attSpinBox")->value(), 7);
    QCOMPARE(spin(d.get(), "boostSpinBox")->value(), 9);
    QCOMPARE(widget<QLabel>(d.get(), "c0Lael")->text(), QStringLiteral("40"));
    QVERIFY(spin(d.get(), "biasSpinBox")->isEnabled());
    QCOMPARE(spin(d.get(), "biasSpinBox")->value(), 7);

    // Manual modes open the fields; going back to Auto restores the fixed values.
    combo(d.get(), "ffeModeCombox")->setCurrentText(QStringLiteral("Manual"));
    QVERIFY(spin(d.get(), "cmSpinBox")->isEnabled());
    spin(d.get(), "cmSpinBox")->setValue(9);
    QCOMPARE(widget<QLabel>(d.get(), "c0Lael")->text(), QStringLiteral("31"));
    combo(d.get(), "ffeModeCombox")->setCurrentText(QStringLiteral("Auto"));
    QCOMPARE(widget<QLabel>(d.get(), "c0Lael")->text(), QStringLiteral("40"));

    QStringList hidden;
    for (QGroupBox *group : d->findChildren<QGroupBox *>()) {
        if (group->isHidden())
            hidden << group->title();
    }
    hidden.sort();
    // The encoding group waits for a rate above 9.8304 Gbps on this device.
    QCOMPARE(hidden, QStringList({QStringLiteral("Encoding and Decoding"), QStringLiteral("RX Ports "),
                                  QStringLiteral("TX Ports ")}));
    QVERIFY(!box(d.get(), "checkBoxDRPPort")->isHidden());
    QVERIFY(!widget<QAbstractButton>(d.get(), "Master")->isEnabled());
    QVERIFY(widget<QAbstractButton>(d.get(), "Master")->isChecked());
    QVERIFY(!edit(d.get(), "HDLCByte")->isEnabled());
    QCOMPARE(edit(d.get(), "HDLCMask")->displayText(), QStringLiteral("0000"));
}

void TestDialog::inputRules_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("acceptable");
    QTest::newRow("three digits") << "ConfigClkPeriod" << "150" << true;
    QTest::newRow("fourth digit") << "ConfigClkPeriod" << "1500" << false;
    QTest::newRow("non-digit") << "ConfigClkPeriod" << "1a" << false;
    QTest::newRow("default frequency") << "refClkFreq" << "122.880" << true;
    QTest::newRow("eight decimals") << "refClkFreq" << "1.12345678" << true;
    QTest::newRow("four integer digits") << "refClkFreq" << "1000" << false;
    QTest::newRow("nine decimals") << "refClkFreq" << "1.123456789" << false;
}

void TestDialog::inputRules()
{
    QFETCH(QString, field);
    QFETCH(QString, text);
    QFETCH(bool, acceptable);
    Project project;
    auto d = project.newDialog();
    const QValidator *validator = edit(d.get(), field.toLatin1().constData())->validator();
    QVERIFY(validator);
    int pos = 0;
    QString input = text;
    QCOMPARE(validator->validate(input, pos) == QValidator::Acceptable, acceptable);
}

void TestDialog::noFreeLaneLeavesOnlyCpll()
{
    Project project;
    for (const char *lane : {"Q0 Lane0", "Q0 Lane1", "Q0 Lane2", "Q0 Lane3"})
        QVERIFY(IPSERDESIP::serdes::instance()->occupyLane(QString::fromLatin1(lane)));
    auto d = project.newDialog();
    QCOMPARE(combo(d.get(), "ChannelSel")->count(), 0);
    QCOMPARE(items(combo(d.get(), "PLL_Selection")), QStringList{QStringLiteral("CPLL")});
    QCOMPARE(CpriDialogProbe(d.get()).freeLaneCount(), 0);
}

void TestDialog::createCancelledGivesEmptyRecord()
{
    Project project;
    cpri protocol(QStringLiteral(CPRI_PACKAGE_DIR));
    QVERIFY(protocol.loadDescriptor());
    CpriHost::ModalDriver driver;
    driver.setDialogHandler([](QDialog *dialog) {
        // A calculation writes the protocol's record even when the user cancels.
        QMetaObject::invokeMethod(dialog, "onButtonCalculateClicked", Q_ARG(bool, false));
        dialog->reject();
    });
    driver.start();
    QVERIFY(protocol.createConfig(QStringLiteral("cpri_0"), project.device).isEmpty());
    QVERIFY(!protocol.configuration().isEmpty());
}

void TestDialog::createAcceptedGivesTheCollectedRecord()
{
    Project project;
    cpri protocol(QStringLiteral(CPRI_PACKAGE_DIR));
    QVERIFY(protocol.loadDescriptor());
    CpriHost::ModalDriver driver;
    driver.setDialogHandler([](QDialog *dialog) {
        box(dialog, "speedSel98304")->click();
        box(dialog, "speedEnable98304")->click();
        dialog->accept();
    });
    driver.start();
    const ConfigMap record = protocol.createConfig(QStringLiteral("cpri_0"), project.device);
    QVERIFY2(!record.isEmpty(), qPrintable(titles(driver.seenBoxes()).join(QLatin1Char('\n'))));
    QCOMPARE(record, protocol.configuration());
    QCOMPARE(record.value(QStringLiteral("Line_Rate")).toString(), QStringLiteral("9.83040Gbps"));
    QCOMPARE(record.value(QStringLiteral("ifChangedAllOfBias")).toBool(), true);
    QCOMPARE(IPSERDESIP::serdes::instance()->getData(QStringLiteral("Q0_BIAS")).toInt(), 7);
    QCOMPARE(record.size(), Config::recordKeys().size() - 1); // no 64B/66B below 8.11008 Gbps
    QVERIFY(IPSERDESIP::serdes::instance()->pendingRoutes().isEmpty());
}

void TestDialog::refusedRecordNeverShowsTheDialog()
{
    Project project;
    cpri protocol(QStringLiteral(CPRI_PACKAGE_DIR));
    QVERIFY(protocol.loadDescriptor());
    bool shown = false;
    CpriHost::ModalDriver driver;
    driver.setAnswer(QMessageBox::Ok);
    driver.setDialogHandler([&shown](QDialog *dialog) {
        shown = true;
        dialog->reject();
    });
    driver.start();
    ConfigMap saved;
    saved.insert(QStringLiteral("version"), QStringLiteral("1.00"));
    QVERIFY(protocol.editConfig(saved).isEmpty());
    QVERIFY(!shown);
    QCOMPARE(titles(driver.seenBoxes()),
             QStringList{QStringLiteral("Error: This version of specified IP Config file is "
                                        "incompatible with current IP Core Generator.")});
}

void TestDialog::successiveDialogsShareNothing()
{
    Project project;
    cpri protocol(QStringLiteral(CPRI_PACKAGE_DIR));
    QVERIFY(protocol.loadDescriptor());
    QList<bool> classCheckedAtStart;
    CpriHost::ModalDriver driver;
    driver.setDialogHandler([&classCheckedAtStart](QDialog *dialog) {
        classCheckedAtStart << box(dialog, "speedSel3072")->isChecked();
        box(dialog, "speedSel3072")->click();
        dialog->reject();
    });
    driver.start();
    protocol.createConfig(QStringLiteral("a"), project.device);
    protocol.createConfig(QStringLiteral("b"), project.device);
    QCOMPARE(classCheckedAtStart, QList<bool>({false, false}));
}

QTEST_MAIN(TestDialog)
#include "tst_dialog.moc"
