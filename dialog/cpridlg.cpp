#include "cpridlg.h"

#include "dialogtexts.h"
#include "fieldrules.h"
#include "portfigure.h"
#include "forms/tabforms.h"
#include "../config/descriptorkeys.h"
#include "../config/linerates.h"
#include "../config/speedrules.h"
#include "../generate/generationnames.h"
#include "../serdes/lanesettings.h"
#include "../serdes/resourcenames.h"

#include <ipcore/ipcorefunctions.h>
#include <ipserdes/generator.h>
#include <ipserdes/serdes.h>
#include <ipserdes/serdesfunctions.h>

#include <QButtonGroup>
#include <QDebug>
#include <QDir>
#include <QIcon>
#include <QMessageBox>
#include <QPixmap>
#include <QRegExp>
#include <QRegExpValidator>

namespace IPCPRI {

namespace {

namespace Key = Config::Key;

IPSERDESIP::serdes *registry()
{
    return IPSERDESIP::serdes::instance();
}

// The rate boxes by rate row; the reserved rows have none.
QVector<QCheckBox *> rateBoxes(const core_config *ui)
{
    return {ui->speedEnable06144, ui->speedEnable12288,  ui->speedEnable24576,
            ui->speedEnable3072,  ui->speedEnable49152,  ui->speedEnable6144,
            ui->speedEnable98304, nullptr,               ui->speedEnable811008,
            ui->speedEnable101376, ui->speedEnable1216512, nullptr};
}

// The speed class boxes, in the order of the speed class table.
QVector<QCheckBox *> speedClassBoxes(const core_config *ui)
{
    return {ui->speedSel3072, ui->speedSel6144, ui->speedSel98304, ui->speedSel101376,
            ui->speedSel1216512};
}

bool enabledAndChecked(const QAbstractButton *button)
{
    return button->isEnabled() && button->isChecked();
}

void setAllEnabled(std::initializer_list<QWidget *> widgets, bool enabled)
{
    for (QWidget *widget : widgets)
        widget->setEnabled(enabled);
}

void selectText(QComboBox *combo, const QString &text)
{
    combo->setCurrentIndex(combo->findText(text));
}

void selectTextIfPresent(QComboBox *combo, const QString &text)
{
    const int index = combo->findText(text);
    if (index >= 0)
        combo->setCurrentIndex(index);
}

// Sets the text only when the field shows another one, so that an entry
// that passes its rule keeps its cursor and undo history. A masked field
// shows its blanks, which text() leaves out.
void setTextIfChanged(QLineEdit *edit, const QString &text)
{
    if (edit->displayText() != text)
        edit->setText(text);
}

QString initial(const QString &key)
{
    return Config::initialValue(key).toString();
}

namespace Choice {
// The line rate shown until the rate boxes are first read, and the one a
// stored record without a rate loads.
const QString InitialLineRate = QStringLiteral("0Gbps");
const QString LoadedLineRate = QStringLiteral("4.9152");
} // namespace Choice

const QString ConfigClockPattern = QStringLiteral("^\\d{0,3}");
const QString RefFrequencyPattern = QStringLiteral("^(\\d{1,3}(\\.\\d{1,8})?)$");
const QString ScramblerSeedMask = QStringLiteral("HHHHHHHH;0");
const QString OneHexDigitMask = QStringLiteral("H;0");
const QString TwoHexDigitsMask = QStringLiteral("HH;0");
const QString FourHexDigitsMask = QStringLiteral("HHHH;0");

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
      biasFlag(0),
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

// ---- Device-dependent initialisation and wiring ----

void cpridlg::initDialog()
{
    auto *classGroup = new QButtonGroup(this);
    classGroup->setExclusive(true);
    for (QCheckBox *box : speedClassBoxes(coreUi))
        classGroup->addButton(box);
    setAllEnabled({coreUi->speedSel101376, coreUi->speedSel1216512}, true);

    auto *rateGroup = new QButtonGroup(this);
    rateGroup->setExclusive(true);
    for (QCheckBox *box : rateBoxes(coreUi)) {
        if (box)
            rateGroup->addButton(box);
    }
    coreUi->speedEnable06144->setEnabled(false);

    const bool topGrade = device().condition() == Config::TopGrade;
    setAllEnabled({coreUi->speedEnable101376, coreUi->speedEnable1216512}, topGrade);
    coreUi->speedEnable811008->setEnabled(true);

    coreUi->ConfigClkPeriod->setValidator(
        new QRegExpValidator(QRegExp(ConfigClockPattern), coreUi->ConfigClkPeriod));
    coreUi->ConfigClkPeriod->setText(initial(Key::ConfigClkPeriod));
    coreUi->ScramblerSeed->setInputMask(ScramblerSeedMask);
    coreUi->ScramblerSeed->setText(initial(Key::ScramblerSeed));
    coreUi->HDLCRate->setInputMask(OneHexDigitMask);
    coreUi->HDLCRate->setText(initial(Key::HdlcRate));
    coreUi->EthernetPointer->setInputMask(TwoHexDigitsMask);
    coreUi->EthernetPointer->setText(initial(Key::EthernetPointer));
    coreUi->HDLCByte->setInputMask(OneHexDigitMask);
    coreUi->HDLCByte->setEnabled(false);
    coreUi->HDLCMask->setInputMask(FourHexDigitsMask);
    coreUi->HDLCMask->setEnabled(false);
    setAllEnabled({coreUi->Master, coreUi->Slave}, false);

    phyUi->lineRate->setEnabled(false);
    phyUi->lineRate->setText(Choice::InitialLineRate);

    const QStringList sources = Serdes::offeredRefClocks(device().device());
    for (int i = 0; i < sources.size(); ++i)
        phyUi->refClkSource->addItem(sources.at(i), i);
    selectText(phyUi->refClkSource, initial(Key::RefClkSource));
    phyUi->refClkFreq->setValidator(
        new QRegExpValidator(QRegExp(RefFrequencyPattern), phyUi->refClkFreq));
    phyUi->refClkFreq->setText(initial(Key::RefClkFrequency));

    phyUi->LoopbackMode->addItems(Config::loopbackModes());
    selectText(phyUi->LoopbackMode, initial(Key::LoopbackMode));
    afeUi->differeSwingComboBox->addItems(Config::differentialSwings());
    selectText(afeUi->differeSwingComboBox, initial(Key::DifferentialSwing));
    afeUi->sdThresholdComboBox->addItems(Config::signalDetectThresholds());
    selectText(afeUi->sdThresholdComboBox, initial(Key::SdThreshold));

    optUi->groupBox->hide();
    optUi->groupBox_2->hide();

    updateBiasDefaultValue();
    biasFlag = 0;
    onFFEModeChanged();
    onEqualizationModeChanged();
    calculateFFE_C0();

    connectSignals();

    updateLaneConect();
    updateRealTimeVendor();
    updateEncodingAndDecoding();
    updatePLLSel();
    updatedRefClkFreq();
    updatedSpeedEnable();
    fileNameConnectCreatIn();
    refreshFigure();
}

void cpridlg::connectSignals()
{
    const QVector<QCheckBox *> rates = rateBoxes(coreUi);
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
    connect(phyUi->refClkSource, SIGNAL(currentIndexChanged(int)), this,
            SLOT(updatedRefClkFreq()));
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
    for (QAbstractButton *button :
         std::initializer_list<QAbstractButton *>{
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
    connect(afeUi->ffeModeCombox, SIGNAL(currentIndexChanged(int)), this,
            SLOT(onFFEModeChanged()));
    connect(afeUi->equalizationModeCombox, SIGNAL(currentIndexChanged(int)), this,
            SLOT(onEqualizationModeChanged()));
}

// ---- Line rates and speed selection ----

int cpridlg::checkSpeedEnable()
{
    QVector<bool> on;
    for (QCheckBox *box : rateBoxes(coreUi))
        on << (box && enabledAndChecked(box));
    const Config::SpeedState state = Config::speedState(on);
    lineRateList = state.rates;
    speedEnableBits = state.mask;
    phyUi->lineRate->setText(Config::lineRateText(state.highest));
    return state.highestIndex;
}

void cpridlg::updatedSpeedEnable()
{
    const QVector<QCheckBox *> classBoxes = speedClassBoxes(coreUi);
    const QVector<Config::SpeedClass> &classes = Config::speedClasses();
    const QVector<QCheckBox *> rates = rateBoxes(coreUi);
    for (int i = 0; i < classBoxes.size(); ++i) {
        if (!classBoxes.at(i)->isChecked())
            continue;
        const Config::SpeedClass &speedClass = classes.at(i);
        const auto moveCheck = [&] {
            for (int index : speedClass.moveCheckFrom) {
                if (rates.at(index)->isChecked()) {
                    rates.at(Config::FallbackRateIndex)->setChecked(true);
                    return;
                }
            }
        };
        for (int index : speedClass.enable)
            rates.at(index)->setEnabled(true);
        if (!speedClass.disableBeforeMove)
            moveCheck();
        for (int index : speedClass.disable)
            rates.at(index)->setEnabled(false);
        if (device().condition() == Config::TopGrade) {
            for (int index : speedClass.enableOnTopGrade)
                rates.at(index)->setEnabled(true);
        }
        if (speedClass.disableBeforeMove)
            moveCheck();
        return;
    }
}

// ---- Clocking controls ----

void cpridlg::updatePLLSel()
{
    QComboBox *plls = phyUi->PLL_Selection;
    plls->clear();
    const double rate = Config::withoutUnit(phyUi->lineRate->displayText()).toDouble();
    const QStringList producible[] = {registry()->checkPLLforQuad0(rate),
                                      registry()->checkPLLforQuad1(rate)};
    const QString lane = phyUi->ChannelSel->currentText();
    const QVector<Serdes::QuadBias> &quads = Serdes::quadBiases();
    for (int quad = 0; quad < quads.size(); ++quad) {
        const QString &quadName = quads.at(quad).quadName;
        if (!lane.contains(quadName))
            continue;
        for (const QString &pll : {Serdes::Qpll0, Serdes::Qpll1}) {
            if (!registry()->checkPllEnable(Serdes::qpllKey(quadName, pll)))
                plls->addItem(pll);
            if (producible[quad].contains(pll) && plls->findText(pll) < 0)
                plls->addItem(pll);
        }
    }
    plls->addItem(Serdes::Cpll);
}

void cpridlg::updateLaneConect()
{
    freeLanes.clear();
    freeLaneCount = 0;
    phyUi->PLL_Selection->clear();
    freeLanes = registry()->notOccupiedLanes();
    freeLaneCount = freeLanes.size();
    phyUi->ChannelSel->addItems(freeLanes);
}

void cpridlg::updatedRefClkFreq()
{
    const double frequency = registry()->getFreqByRefsrc(phyUi->refClkSource->currentText());
    const bool free = frequency == 0.0;
    phyUi->refClkFreq->setText(free ? initial(Key::RefClkFrequency)
                                    : Serdes::frequencyText(frequency));
    phyUi->refClkFreq->setEnabled(free);
}

bool cpridlg::checkRefClockAccess()
{
    const QString source =
        IPSERDESIP::refsrcOptTransforSerdesName(phyUi->refClkSource->currentText());
    const QString lane = phyUi->ChannelSel->currentText();
    if (!registry()->checkAccess(source, Serdes::laneAccessName(lane, true)))
        return false;
    return registry()->checkAccess(source, Serdes::laneAccessName(lane, false));
}

// ---- Interactive field rules ----

void cpridlg::updateRealTimeVendor()
{
    coreUi->RealTimeVendor->setEnabled(enabledAndChecked(coreUi->speedEnable101376)
                                       || enabledAndChecked(coreUi->speedEnable1216512));
}

void cpridlg::updateEncodingAndDecoding()
{
    if (!Serdes::inFamily(Serdes::BothFamilies, device().device()))
        return;
    const bool above98304 = coreUi->speedEnable1216512->isChecked()
                            || coreUi->speedEnable101376->isChecked()
                            || coreUi->speedEnable811008->isChecked();
    phyUi->groupBoxEncodingAndDecoding->setEnabled(above98304);
    phyUi->groupBoxEncodingAndDecoding->setVisible(above98304);
}

void cpridlg::checkClkPeriod()
{
    setTextIfChanged(coreUi->ConfigClkPeriod,
                     FieldRules::configClock(coreUi->ConfigClkPeriod->text()));
}

void cpridlg::checkRefClkFreq()
{
    setTextIfChanged(phyUi->refClkFreq, FieldRules::referenceFrequency(phyUi->refClkFreq->text()));
}

void cpridlg::checkLineEditInPut()
{
    bool converted = true;
    const QString seed = FieldRules::scramblerSeed(coreUi->ScramblerSeed->displayText(), &converted);
    if (!converted)
        qDebug().noquote() << Texts::HexConversionFailed;
    setTextIfChanged(coreUi->ScramblerSeed, seed);
    const QString pointer =
        FieldRules::ethernetPointer(coreUi->EthernetPointer->displayText(), &converted);
    if (!converted)
        qDebug().noquote() << Texts::HexConversionFailed;
    setTextIfChanged(coreUi->EthernetPointer, pointer);
    setTextIfChanged(coreUi->HDLCRate, FieldRules::hdlcRate(coreUi->HDLCRate->displayText()));
}

bool cpridlg::calculateFFE_C0()
{
    const int c0 = FieldRules::ffeC0(afeUi->cmSpinBox->value(), afeUi->c1SpinBox->value());
    afeUi->c0Lael->setText(QString::number(c0));
    if (c0 > FieldRules::FfeMinimumC0)
        return true;
    QMessageBox::about(this, Texts::WarningTitle, Texts::C0TooSmall);
    return false;
}

void cpridlg::onFFEModeChanged()
{
    const QString mode = afeUi->ffeModeCombox->currentText();
    if (mode == Config::AutoMode) {
        afeUi->cmSpinBox->setValue(0);
        afeUi->c1SpinBox->setValue(0);
        setAllEnabled({afeUi->cmSpinBox, afeUi->c1SpinBox, afeUi->label, afeUi->label_2}, false);
    } else if (mode == Config::ManualMode) {
        setAllEnabled({afeUi->cmSpinBox, afeUi->c1SpinBox, afeUi->label, afeUi->label_2}, true);
    }
}

void cpridlg::onEqualizationModeChanged()
{
    const QString mode = afeUi->equalizationModeCombox->currentText();
    if (mode == Config::AutoMode) {
        afeUi->attSpinBox->setValue(Config::initialValue(Key::Att).toInt());
        afeUi->attSpinBox->setEnabled(false);
        afeUi->boostSpinBox->setValue(Config::initialValue(Key::Boost).toInt());
        afeUi->boostSpinBox->setEnabled(false);
        setAllEnabled({afeUi->label_14, afeUi->label_15}, false);
    } else if (mode == Config::ManualMode) {
        setAllEnabled({afeUi->attSpinBox, afeUi->boostSpinBox, afeUi->label_14, afeUi->label_15},
                   true);
    }
}

void cpridlg::resetFlagforBias()
{
    biasFlag = 0;
}

void cpridlg::updateBiasDefaultValue()
{
    const QString lane = phyUi->ChannelSel->currentText();
    for (const Serdes::QuadBias &quad : Serdes::quadBiases()) {
        if (!lane.startsWith(quad.quadName))
            continue;
        if (registry()->globalData().contains(quad.registryKey))
            afeUi->biasSpinBox->setValue(registry()->getData(quad.registryKey).toInt());
        else if (quadBias.contains(quad.quadName))
            afeUi->biasSpinBox->setValue(quadBias.value(quad.quadName).toInt());
        else
            afeUi->biasSpinBox->setValue(FieldRules::DefaultBias);
        return;
    }
    afeUi->biasSpinBox->setValue(FieldRules::DefaultBias);
}

// ---- Port figure ----

void cpridlg::refreshFigure()
{
    using DataPath = FigureChoices::DataPath;
    FigureChoices c;
    if (coreUi->speedSel3072->isChecked())
        c.dataPath = DataPath::Narrow3072;
    else if (coreUi->speedSel6144->isChecked())
        c.dataPath = DataPath::Narrow6144;
    else if (coreUi->speedSel98304->isChecked())
        c.dataPath = DataPath::Narrow98304;
    else if (enabledAndChecked(coreUi->speedSel101376)
             || enabledAndChecked(coreUi->speedSel1216512))
        c.dataPath = DataPath::Wide;
    c.realTimeVendor = enabledAndChecked(coreUi->RealTimeVendor);
    c.mii = coreUi->MII->isChecked();
    c.gmii = coreUi->GMII->isChecked();
    c.loopbackPorts = optUi->checkBoxLoopBackPorts->isChecked();
    c.drpPorts = optUi->checkBoxDRPPort->isChecked();
    c.differentialSwingPorts = optUi->checkBoxDifferSwingPorts->isChecked();
    c.ffePorts = optUi->checkBoxFFEPorts->isChecked();
    c.equalizationPorts = optUi->checkBoxEqualizationPorts->isChecked();
    c.biasPorts = optUi->checkBoxBIASPorts->isChecked();
    c.prbsGeneratorPorts = optUi->checkBoxPPGP->isChecked();
    c.prbsCheckerPorts = optUi->checkBoxPPCP->isChecked();
    uiSetFigurePins(portFigure(c));
}

// ---- Collecting and accepting ----

void cpridlg::appendLaneSettings(QStringList &settings, const QString &lanePrefix,
                                 const QString &quadPrefix)
{
    Serdes::LaneSettingsInput in;
    in.pll = phyUi->PLL_Selection->currentText();
    in.loopback = phyUi->LoopbackMode->currentText();
    in.rateIndex = checkSpeedEnable();
    in.placement64b66b = phyUi->comboBox64B_66B_Mode->currentText();
    in.lineRate = phyUi->lineRate->text();
    in.differentialSwing = afeUi->differeSwingComboBox->currentText();
    in.ffeMode = afeUi->ffeModeCombox->currentText();
    in.ffeCm = afeUi->cmSpinBox->value();
    in.ffeC1 = afeUi->c1SpinBox->value();
    in.ffeC0 = afeUi->c0Lael->text();
    in.sdThreshold = afeUi->sdThresholdComboBox->currentText();
    in.equalizationMode = afeUi->equalizationModeCombox->currentText();
    in.att = afeUi->attSpinBox->value();
    in.boost = afeUi->boostSpinBox->value();
    in.listedDevice = Serdes::inFamily(Serdes::BothFamilies, device().device());
    Serdes::appendLaneSettings(settings, lanePrefix, quadPrefix, in);
}

bool cpridlg::collectConfiguration()
{
    routeLanes.clear();
    routePlls.clear();
    routeRefClocks.clear();
    routeRefFreqs.clear();
    serdesSettings.clear();
    resultConfig->clear();

    if (const Serdes::Lane *lane = Serdes::laneByDisplayName(phyUi->ChannelSel->currentText())) {
        appendLaneSettings(serdesSettings, lane->prefix, lane->quadPrefix);
        routeLanes << lane->key;
        if (const std::optional<QString> pll =
                Serdes::pllKey(*lane, phyUi->PLL_Selection->currentText()))
            routePlls << *pll;
    }
    const QString source = phyUi->refClkSource->currentText();
    routeRefClocks << IPSERDESIP::FromRefOptionToRef(source);
    routeRefFreqs << phyUi->refClkFreq->text();
    if (const std::optional<QString> line = Serdes::frequencyLine(source, phyUi->refClkFreq->text()))
        serdesSettings << *line;
    registry()->setGlobalResetEnableParam(serdesSettings);

    ConfigMap &r = *resultConfig;
    const auto checkedBox = [&r](const QString &key, const QAbstractButton *box) {
        r.insert(key, enabledAndChecked(box));
    };
    r.insert(Key::TargetDevice, device().id());
    r.insert(Key::Type, ipInfo.value(Descriptor::Id).toString());
    r.insert(Key::Version, Config::FormatVersion);
    r.insert(Key::SynthesisTool, uiSynthesisTool());
    r.insert(Key::Language, uiLanguageIndex());
    r.insert(Key::File, fileName());
    r.insert(Key::Module, moduleName());
    const QVector<Config::SpeedClass> &classes = Config::speedClasses();
    const QVector<QCheckBox *> classBoxes = speedClassBoxes(coreUi);
    for (int i = 0; i < classes.size(); ++i)
        checkedBox(classes.at(i).key, classBoxes.at(i));
    const QVector<QCheckBox *> rates = rateBoxes(coreUi);
    for (int i = 0; i < rates.size(); ++i) {
        if (rates.at(i))
            checkedBox(Config::rateRows().at(i).key, rates.at(i));
    }
    r.insert(Key::ConfigClkPeriod, coreUi->ConfigClkPeriod->text());
    checkedBox(Key::Mii, coreUi->MII);
    checkedBox(Key::Gmii, coreUi->GMII);
    checkedBox(Key::ProtocolVersion1, coreUi->ProtocolVersion1);
    checkedBox(Key::ProtocolVersion2, coreUi->ProtocolVersion2);
    r.insert(Key::ScramblerSeed, coreUi->ScramblerSeed->displayText());
    r.insert(Key::HdlcRate, coreUi->HDLCRate->displayText());
    r.insert(Key::HdlcByte, coreUi->HDLCByte->displayText());
    r.insert(Key::HdlcMask, coreUi->HDLCMask->displayText());
    r.insert(Key::EthernetPointer, coreUi->EthernetPointer->displayText());
    checkedBox(Key::FixedConfigEnable, coreUi->FixedConfigEnable);
    checkedBox(Key::RealTimeVendor, coreUi->RealTimeVendor);
    checkedBox(Key::Master, coreUi->Master);
    checkedBox(Key::Slave, coreUi->Slave);
    r.insert(Key::ChannelSelection, phyUi->ChannelSel->currentText());
    r.insert(Key::LineRate, phyUi->lineRate->text());
    r.insert(Key::RefClkSource, source);
    r.insert(Key::RefClkFrequency, phyUi->refClkFreq->text());
    r.insert(Key::PllSelection, phyUi->PLL_Selection->currentText());
    r.insert(Key::LoopbackMode, phyUi->LoopbackMode->currentText());
    const QGroupBox *encoding = phyUi->groupBoxEncodingAndDecoding;
    if (!encoding->isHidden() && encoding->isEnabled())
        r.insert(Key::Mode64b66b, phyUi->comboBox64B_66B_Mode->currentText());
    r.insert(Key::HighestSpeedIndex, checkSpeedEnable());
    r.insert(Key::SpeedEnablesRecord, speedEnableBits);
    r.insert(Key::DifferentialSwing, afeUi->differeSwingComboBox->currentText());
    r.insert(Key::FfeMode, afeUi->ffeModeCombox->currentText());
    r.insert(Key::FfeCm, afeUi->cmSpinBox->value());
    r.insert(Key::FfeC1, afeUi->c1SpinBox->value());
    r.insert(Key::FfeC0, afeUi->c0Lael->text());
    r.insert(Key::SdThreshold, afeUi->sdThresholdComboBox->currentText());
    r.insert(Key::EqualizationMode, afeUi->equalizationModeCombox->currentText());
    r.insert(Key::Att, afeUi->attSpinBox->value());
    r.insert(Key::Boost, afeUi->boostSpinBox->value());
    r.insert(Key::LoopbackPorts, optUi->checkBoxLoopBackPorts->isChecked());
    r.insert(Key::DrpPorts, optUi->checkBoxDRPPort->isChecked());
    r.insert(Key::PrbsGeneratorPorts, optUi->checkBoxPPGP->isChecked());
    r.insert(Key::DifferentialSwingPorts, optUi->checkBoxDifferSwingPorts->isChecked());
    r.insert(Key::FfePorts, optUi->checkBoxFFEPorts->isChecked());
    r.insert(Key::PrbsCheckerPorts, optUi->checkBoxPPCP->isChecked());
    r.insert(Key::EqualizationPorts, optUi->checkBoxEqualizationPorts->isChecked());
    r.insert(Key::BiasPorts, optUi->checkBoxBIASPorts->isChecked());
    return true;
}

void cpridlg::showErrorBox(const QString &text)
{
    QMessageBox box(QMessageBox::NoIcon, Texts::ErrorTitle, text, QMessageBox::Ok, this,
                    Qt::Dialog | Qt::MSWindowsFixedSizeDialogHint);
    box.setWindowIcon(QIcon(Texts::ModuleImage));
    box.setIconPixmap(QPixmap(Texts::ExclamationImage));
    box.exec();
}

void cpridlg::accept()
{
    QStringList fileErrors;
    checkFileOptions(fileErrors);
    if (!fileErrors.isEmpty()) {
        showErrorMsg(fileErrors);
        return;
    }
    if (!fileCheckSkipped && !checkFileExisting())
        return;
    if (!checkModuleName())
        return;
    if (freeLaneCount == 0) {
        showErrorBox(Texts::NoAvailableLanes);
        return;
    }
    if (checkSpeedEnable() < 0) {
        showErrorBox(Texts::EnableSpeed);
        return;
    }
    const QVector<QCheckBox *> classBoxes = speedClassBoxes(coreUi);
    if (std::none_of(classBoxes.cbegin(), classBoxes.cend(),
                     [](const QCheckBox *box) { return box->isChecked(); })) {
        showErrorBox(Texts::SelectSpeedSelection);
        return;
    }
    if (!calculateFFE_C0() || !collectConfiguration() || !onButtonCalculateClicked(false))
        return;
    const bool wholeQuad = biasFlag == 1;
    resultConfig->insert(Key::ChangedAllOfBias, wholeQuad);
    if (wholeQuad) {
        const QString lane = phyUi->ChannelSel->currentText();
        for (const Serdes::QuadBias &quad : Serdes::quadBiases()) {
            if (lane.startsWith(quad.quadName))
                registry()->setData(quad.registryKey, afeUi->biasSpinBox->value());
        }
    }
    QDialog::accept();
}

// ---- Calculation of SERDES settings ----

bool cpridlg::onButtonCalculateClicked(bool prompt)
{
    const QString source =
        IPSERDESIP::refsrcOptTransforSerdesName(phyUi->refClkSource->currentText());
    if (const IPSERDESIP::REF_SOURCE *used = registry()->FormStringToREFSPtr(source)) {
        // A text that is no number reads as 0.0; a frequency that is no
        // number (NaN) never equals anything.
        const double frequency = phyUi->refClkFreq->displayText().toDouble();
        if (used->userCount > 0 && !(frequency == used->frequency)) {
            QMessageBox::about(this, Texts::FailureTitle, Texts::RefClockUnreachable);
            return false;
        }
    }
    const QString tempDir = Generate::coreOutputDir(createPath());
    if (!QDir(tempDir).exists()
        && !IPCore::makeDirs(tempDir, ipInfo.value(Descriptor::Name).toString()))
        return false;
    if (!collectConfiguration() || serdesSettings.isEmpty())
        return false;
    if (biasFlag == 0) {
        promptQuadBias();
    } else if (biasFlag == 1) {
        const int bias = afeUi->biasSpinBox->value();
        serdesSettings << Serdes::biasLines(phyUi->ChannelSel->currentText(),
                                            [bias](const Serdes::QuadBias &) { return bias; });
    }
    if (!checkRefClockAccess()) {
        QMessageBox::about(this, Texts::FailureTitle, Texts::RefClockUnreachable);
        return false;
    }
    registry()->checkRoute(routeLanes, routePlls, routeRefClocks, routeRefFreqs);
    if (!serdesGenerator)
        serdesGenerator = new IPSERDESIP::generator;
    const bool generated = serdesGenerator->generate(
        serdesSettings, tempDir + QLatin1Char('/') + Generate::RegisterFile, QStringList());
    for (const QString &lane : qAsConst(routeLanes))
        registry()->resetLane(lane, false);
    if (!generated) {
        const QStringList errors = serdesGenerator->getErrStringList();
        QMessageBox::about(this, Texts::FailureTitle,
                           errors.isEmpty() ? Texts::LineRateUnreachable
                                            : errors.join(QLatin1Char('\n')));
        return false;
    }
    if (prompt)
        QMessageBox::about(this, Texts::SucceedTitle, Texts::Succeed);
    return true;
}

void cpridlg::promptQuadBias()
{
    const QString lane = phyUi->ChannelSel->currentText();
    QStringList others;
    for (const Serdes::QuadBias &quad : Serdes::quadBiases()) {
        QStringList quadLanes;
        for (const Serdes::Lane &candidate : Serdes::lanes()) {
            if (candidate.quadName == quad.quadName)
                quadLanes << candidate.displayName;
        }
        quadLanes.removeOne(lane);
        if (!quadLanes.isEmpty() && quadLanes.size() != Serdes::LanesPerQuad)
            others << quadLanes.join(Texts::ListSeparator);
    }
    const int bias = afeUi->biasSpinBox->value();
    if (!others.isEmpty()) {
        const QMessageBox::StandardButton answer = QMessageBox::question(
            this, Texts::QuestionTitle,
            Texts::BiasQuestion.arg(others.join(Texts::ListSeparator)).arg(bias),
            QMessageBox::No | QMessageBox::Yes);
        if (answer != QMessageBox::Yes) {
            biasFlag = 2;
            return;
        }
    }
    biasFlag = 1;
    for (const Serdes::QuadBias &quad : Serdes::quadBiases()) {
        if (!lane.startsWith(quad.quadName))
            continue;
        serdesSettings << quad.settingLine.arg(bias);
        quadBias.insert(quad.quadName, bias);
    }
}

// ---- Loading a saved configuration ----

bool cpridlg::loadConfiguration(const QMap<QString, QVariant> &config)
{
    if (config.value(Key::Version).toString() != Config::FormatVersion) {
        showErrorBox(Texts::IncompatibleVersion);
        return false;
    }
    applyConfiguration(config);
    return true;
}

void cpridlg::applyConfiguration(const QMap<QString, QVariant> &config)
{
    const auto value = [&config](const QString &key, const QVariant &fallback) {
        return config.value(key, fallback);
    };
    const auto check = [&value](QAbstractButton *box, const QString &key, bool fallback) {
        box->setChecked(value(key, fallback).toBool());
    };
    const auto text = [&value](const QString &key, const QString &fallback = QString()) {
        return value(key, fallback).toString();
    };

    uiSetSynthesisTool(text(Key::SynthesisTool));
    uiSetLanguageIndex(value(Key::Language, 0).toInt());
    const QVector<Config::SpeedClass> &classes = Config::speedClasses();
    const QVector<QCheckBox *> classBoxes = speedClassBoxes(coreUi);
    for (int i = 0; i < classes.size(); ++i)
        check(classBoxes.at(i), classes.at(i).key, false);
    const QVector<QCheckBox *> rates = rateBoxes(coreUi);
    for (int i = 0; i < rates.size(); ++i) {
        if (rates.at(i))
            check(rates.at(i), Config::rateRows().at(i).key, false);
    }
    check(coreUi->Master, Key::Master, true);
    check(coreUi->Slave, Key::Slave, false);
    check(coreUi->MII, Key::Mii, true);
    check(coreUi->GMII, Key::Gmii, false);
    check(coreUi->FixedConfigEnable, Key::FixedConfigEnable, false);
    coreUi->ConfigClkPeriod->setText(text(Key::ConfigClkPeriod, initial(Key::ConfigClkPeriod)));
    check(coreUi->RealTimeVendor, Key::RealTimeVendor, false);
    check(coreUi->ProtocolVersion1, Key::ProtocolVersion1, true);
    check(coreUi->ProtocolVersion2, Key::ProtocolVersion2, false);
    coreUi->EthernetPointer->setText(text(Key::EthernetPointer));
    coreUi->HDLCRate->setText(text(Key::HdlcRate));
    coreUi->HDLCByte->setText(text(Key::HdlcByte));
    coreUi->HDLCMask->setText(text(Key::HdlcMask));
    coreUi->ScramblerSeed->setText(text(Key::ScramblerSeed));

    selectTextIfPresent(phyUi->ChannelSel, text(Key::ChannelSelection));
    phyUi->lineRate->setText(text(Key::LineRate, Choice::LoadedLineRate));
    selectText(phyUi->refClkSource, text(Key::RefClkSource, initial(Key::RefClkSource)));
    phyUi->refClkFreq->setText(text(Key::RefClkFrequency, initial(Key::RefClkFrequency)));
    selectTextIfPresent(phyUi->PLL_Selection, text(Key::PllSelection));
    selectText(phyUi->LoopbackMode, text(Key::LoopbackMode, initial(Key::LoopbackMode)));
    selectText(phyUi->comboBox64B_66B_Mode, text(Key::Mode64b66b, initial(Key::Mode64b66b)));

    selectText(afeUi->differeSwingComboBox, text(Key::DifferentialSwing, initial(Key::DifferentialSwing)));
    selectText(afeUi->ffeModeCombox, text(Key::FfeMode, initial(Key::FfeMode)));
    afeUi->cmSpinBox->setValue(value(Key::FfeCm, 0).toInt());
    afeUi->c1SpinBox->setValue(value(Key::FfeC1, 0).toInt());
    afeUi->c0Lael->setText(text(Key::FfeC0, QString::number(FieldRules::FfeTapSum)));
    selectText(afeUi->sdThresholdComboBox, text(Key::SdThreshold, initial(Key::SdThreshold)));
    selectText(afeUi->equalizationModeCombox, text(Key::EqualizationMode, initial(Key::EqualizationMode)));
    afeUi->attSpinBox->setValue(value(Key::Att, Config::initialValue(Key::Att).toInt()).toInt());
    afeUi->boostSpinBox->setValue(value(Key::Boost, Config::initialValue(Key::Boost).toInt()).toInt());
    const QString lane = phyUi->ChannelSel->currentText();
    const QMap<QString, QVariant> shared = registry()->globalData();
    for (const Serdes::QuadBias &quad : Serdes::quadBiases()) {
        if (lane.startsWith(quad.quadName) && shared.contains(quad.registryKey))
            afeUi->biasSpinBox->setValue(registry()->getData(quad.registryKey).toInt());
    }
    if (config.contains(Key::ChangedAllOfBias))
        biasFlag = config.value(Key::ChangedAllOfBias).toBool() ? 1 : 2;

    check(optUi->checkBoxLoopBackPorts, Key::LoopbackPorts, false);
    check(optUi->checkBoxPPGP, Key::PrbsGeneratorPorts, false);
    check(optUi->checkBoxDifferSwingPorts, Key::DifferentialSwingPorts, false);
    check(optUi->checkBoxFFEPorts, Key::FfePorts, false);
    check(optUi->checkBoxPPCP, Key::PrbsCheckerPorts, false);
    check(optUi->checkBoxEqualizationPorts, Key::EqualizationPorts, false);
    check(optUi->checkBoxBIASPorts, Key::BiasPorts, false);
    check(optUi->checkBoxDRPPort, Key::DrpPorts, false);
}

} // namespace IPCPRI
