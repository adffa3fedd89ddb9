// The dialog's set-up: its tabs, its preparation for a device and the
// wiring of its widgets to its slots.

#include "cpridlg.h"

#include "dialogtexts.h"
#include "dialogwidgets.h"
#include "forms/tabforms.h"
#include "../config/descriptorkeys.h"
#include "../config/linerates.h"
#include "../config/speedrules.h"
#include "../serdes/resourcenames.h"

#include <ipserdes/generator.h>

#include <QButtonGroup>
#include <QRegExp>
#include <QRegExpValidator>

namespace IPCPRI {

namespace {

using namespace DialogWidgets;
namespace Key = Config::Key;

// The line rate shown until the rate boxes are first read.
const QString InitialLineRate = QStringLiteral("0Gbps");

const QString ConfigClockPattern = QStringLiteral("^\\d{0,3}");
const QString RefFrequencyPattern = QStringLiteral("^(\\d{1,3}(\\.\\d{1,8})?)$");
const QString ScramblerSeedMask = QStringLiteral("HHHHHHHH;0");
const QString OneHexDigitMask = QStringLiteral("H;0");
const QString TwoHexDigitsMask = QStringLiteral("HH;0");
const QString FourHexDigitsMask = QStringLiteral("HHHH;0");

void setValidator(QLineEdit *edit, const QString &pattern)
{
    edit->setValidator(new QRegExpValidator(QRegExp(pattern), edit));
}

// The preset fields of the core tab: input rules, start texts, and the two
// fields no user edits.
void prepareCoreFields(core_config *ui)
{
    setValidator(ui->ConfigClkPeriod, ConfigClockPattern);
    ui->ConfigClkPeriod->setText(initial(Key::ConfigClkPeriod));
    ui->ScramblerSeed->setInputMask(ScramblerSeedMask);
    ui->ScramblerSeed->setText(initial(Key::ScramblerSeed));
    ui->HDLCRate->setInputMask(OneHexDigitMask);
    ui->HDLCRate->setText(initial(Key::HdlcRate));
    ui->EthernetPointer->setInputMask(TwoHexDigitsMask);
    ui->EthernetPointer->setText(initial(Key::EthernetPointer));
    ui->HDLCByte->setInputMask(OneHexDigitMask);
    ui->HDLCByte->setEnabled(false);
    ui->HDLCMask->setInputMask(FourHexDigitsMask);
    ui->HDLCMask->setEnabled(false);
    // The role stays at the form's Master.
    setAllEnabled({ui->Master, ui->Slave}, false);
}

// The reference clocks the device's family offers (each with its index as
// item data) and the fixed lists of the PHY and AFE tabs.
void fillLists(phy_config *phy, afe_config *afe, const QString &partName)
{
    phy->lineRate->setEnabled(false);
    phy->lineRate->setText(InitialLineRate);
    const QStringList sources = Serdes::offeredRefClocks(partName);
    for (int i = 0; i < sources.size(); ++i)
        phy->refClkSource->addItem(sources.at(i), i);
    selectText(phy->refClkSource, initial(Key::RefClkSource));
    setValidator(phy->refClkFreq, RefFrequencyPattern);
    phy->refClkFreq->setText(initial(Key::RefClkFrequency));

    phy->LoopbackMode->addItems(Config::loopbackModes());
    selectText(phy->LoopbackMode, initial(Key::LoopbackMode));
    afe->differeSwingComboBox->addItems(Config::differentialSwings());
    selectText(afe->differeSwingComboBox, initial(Key::DifferentialSwing));
    afe->sdThresholdComboBox->addItems(Config::signalDetectThresholds());
    selectText(afe->sdThresholdComboBox, initial(Key::SdThreshold));
}

} // namespace

cpridlg::cpridlg(const QMap<QString, QVariant> &ipInfo, QMap<QString, QVariant> *resultConfig,
                 QWidget *parent)
    : IPSERDESIP::protocolGenDlg(parent),
      coreUi(new core_config),
      phyUi(new phy_config),
      afeUi(new afe_config),
      optUi(new opt_config),
      ipInfo(ipInfo),
      resultConfig(resultConfig),
      serdesGenerator(nullptr),
      biasFlag(BiasUndecided),
      freeLaneCount(0)
{
    uiSetLabelText(this->ipInfo.value(Descriptor::Label).toString());
    uiSetDefaultFileName(this->ipInfo.value(Descriptor::Target).toString());
    uiSetModuleName(this->ipInfo.value(Descriptor::Module).toString());
    helpDocument = this->ipInfo.value(Descriptor::Help).toString();

    auto *corePage = new QWidget(this);
    auto *phyPage = new QWidget(this);
    auto *afePage = new QWidget(this);
    auto *optPage = new QWidget(this);
    coreUi->setupUi(corePage);
    phyUi->setupUi(phyPage);
    afeUi->setupUi(afePage);
    optUi->setupUi(optPage);
    uiAddTab(corePage, Texts::CoreTab);
    uiAddTab(phyPage, Texts::PhyTab);
    uiAddTab(afePage, Texts::AfeTab);
    uiAddTab(optPage, Texts::OptTab);
}

cpridlg::~cpridlg()
{
    delete coreUi;
    delete phyUi;
    delete afeUi;
    delete optUi;
    delete serdesGenerator;
}

QVector<QCheckBox *> cpridlg::rateBoxes() const
{
    const core_config *ui = coreUi;
    return {
        ui->speedEnable06144,  ui->speedEnable12288,  ui->speedEnable24576,   ui->speedEnable3072,
        ui->speedEnable49152,  ui->speedEnable6144,   ui->speedEnable98304,   nullptr,
        ui->speedEnable811008, ui->speedEnable101376, ui->speedEnable1216512, nullptr};
}

QVector<QCheckBox *> cpridlg::speedClassBoxes() const
{
    const core_config *ui = coreUi;
    return {ui->speedSel3072, ui->speedSel6144, ui->speedSel98304, ui->speedSel101376,
            ui->speedSel1216512};
}

// Until connectSignals no slot runs; from then on every change below runs
// the slots its widget is wired to, in the order of their connections.
void cpridlg::initDialog()
{
    auto *classGroup = new QButtonGroup(this);
    classGroup->setExclusive(true);
    for (QCheckBox *box : speedClassBoxes())
        classGroup->addButton(box);
    setAllEnabled({coreUi->speedSel101376, coreUi->speedSel1216512}, true);

    auto *rateGroup = new QButtonGroup(this);
    rateGroup->setExclusive(true);
    const QVector<QCheckBox *> rates = rateBoxes();
    for (QCheckBox *box : rates) {
        if (box)
            rateGroup->addButton(box);
    }
    const QString grade = device().condition();
    for (int i = 0; i < rates.size(); ++i) {
        if (rates.at(i))
            rates.at(i)->setEnabled(Config::rateOfferedAtStart(i, grade));
    }

    prepareCoreFields(coreUi);
    fillLists(phyUi, afeUi, device().device());
    optUi->groupBox->hide();
    optUi->groupBox_2->hide();

    updateBiasDefaultValue();
    biasFlag = BiasUndecided;
    onFFEModeChanged();
    onEqualizationModeChanged();
    calculateFFE_C0();

    connectSignals();

    // Filling the lane list makes its first lane current, which runs
    // updatePLLSel, resetFlagforBias and updateBiasDefaultValue.
    updateLaneConect();
    updateRealTimeVendor();
    updateEncodingAndDecoding();
    updatePLLSel();
    updatedRefClkFreq();
    updatedSpeedEnable();
    fileNameConnectCreatIn();
    refreshFigure();
}

// The order of the connections is the order in which slots sharing a signal
// run: a check box emits toggled before clicked, so a click on a rate box
// runs updateEncodingAndDecoding, updateRealTimeVendor and refreshFigure
// before checkSpeedEnable; a click on a speed class runs updatedSpeedEnable
// before refreshFigure; a new lane runs updatePLLSel, then resetFlagforBias,
// then updateBiasDefaultValue. Loading a record relies on that order.
void cpridlg::connectSignals()
{
    const QVector<QCheckBox *> rates = rateBoxes();
    for (QCheckBox *box : rates) {
        if (box)
            connect(box, SIGNAL(clicked()), this, SLOT(checkSpeedEnable()));
    }
    for (QCheckBox *box : rates) {
        if (box)
            connect(box, SIGNAL(toggled(bool)), this, SLOT(updateEncodingAndDecoding()));
    }
    for (QCheckBox *box : {coreUi->speedSel101376, coreUi->speedSel1216512,
                           coreUi->speedEnable101376, coreUi->speedEnable1216512})
        connect(box, SIGNAL(toggled(bool)), this, SLOT(updateRealTimeVendor()));
    connect(phyUi->ChannelSel, SIGNAL(currentIndexChanged(int)), this, SLOT(updatePLLSel()));
    connect(coreUi->ConfigClkPeriod, SIGNAL(editingFinished()), this, SLOT(checkClkPeriod()));
    connect(phyUi->refClkFreq, SIGNAL(editingFinished()), this, SLOT(checkRefClkFreq()));
    connect(phyUi->refClkSource, SIGNAL(currentIndexChanged(int)), this, SLOT(updatedRefClkFreq()));
    connect(phyUi->Calculate, SIGNAL(clicked()), this, SLOT(onButtonCalculateClicked()));
    for (QLineEdit *edit : {coreUi->ScramblerSeed, coreUi->HDLCRate, coreUi->EthernetPointer})
        connect(edit, SIGNAL(editingFinished()), this, SLOT(checkLineEditInPut()));
    connect(phyUi->lineRate, SIGNAL(textChanged(QString)), this, SLOT(updatePLLSel()));
    const QVector<QCheckBox *> classes = {coreUi->speedSel3072, coreUi->speedSel98304,
                                          coreUi->speedSel6144, coreUi->speedSel101376,
                                          coreUi->speedSel1216512};
    for (QCheckBox *box : classes)
        connect(box, SIGNAL(clicked()), this, SLOT(updatedSpeedEnable()));
    for (QCheckBox *box : classes)
        connect(box, SIGNAL(clicked()), this, SLOT(refreshFigure()));
    for (QAbstractButton *button : std::initializer_list<QAbstractButton *>{
             coreUi->speedEnable101376, coreUi->RealTimeVendor, coreUi->MII, coreUi->GMII,
             optUi->checkBoxBIASPorts, optUi->checkBoxDifferSwingPorts, optUi->checkBoxDRPPort,
             optUi->checkBoxEqualizationPorts, optUi->checkBoxFFEPorts,
             optUi->checkBoxLoopBackPorts, optUi->checkBoxPPCP, optUi->checkBoxPPGP})
        connect(button, SIGNAL(toggled(bool)), this, SLOT(refreshFigure()));
    connect(phyUi->ChannelSel, SIGNAL(currentIndexChanged(QString)), this,
            SLOT(resetFlagforBias()));
    connect(phyUi->ChannelSel, SIGNAL(currentIndexChanged(QString)), this,
            SLOT(updateBiasDefaultValue()));
    for (QSpinBox *spin : {afeUi->cmSpinBox, afeUi->c1SpinBox})
        connect(spin, SIGNAL(valueChanged(int)), this, SLOT(calculateFFE_C0()));
    connect(afeUi->ffeModeCombox, SIGNAL(currentIndexChanged(int)), this, SLOT(onFFEModeChanged()));
    connect(afeUi->equalizationModeCombox, SIGNAL(currentIndexChanged(int)), this,
            SLOT(onEqualizationModeChanged()));
}

} // namespace IPCPRI
