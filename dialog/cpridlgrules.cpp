// The dialog's rules while the user edits: line rates and speed classes,
// the clocking controls, the field rules and the port figure.

#include "cpridlg.h"

#include "dialogtexts.h"
#include "dialogwidgets.h"
#include "fieldrules.h"
#include "portfigure.h"
#include "forms/tabforms.h"
#include "../config/linerates.h"
#include "../config/speedrules.h"
#include "../serdes/clocking.h"
#include "../serdes/resourcenames.h"

#include <QDebug>
#include <QMessageBox>

#include <algorithm>

namespace IPCPRI {

namespace {

using namespace DialogWidgets;
namespace Key = Config::Key;

bool anyChecked(const QVector<QCheckBox *> &boxes, const QVector<int> &indices,
                bool (*counts)(const QAbstractButton *))
{
    return std::any_of(indices.cbegin(), indices.cend(),
                       [&](int index) { return counts(boxes.at(index)); });
}

bool checked(const QAbstractButton *button)
{
    return button->isChecked();
}

} // namespace

// ---- Line rates and speed selection ----

int cpridlg::checkSpeedEnable()
{
    QVector<bool> on;
    for (QCheckBox *box : rateBoxes())
        on << (box && enabledAndChecked(box));
    const Config::SpeedState state = Config::speedState(on);
    lineRateList = state.rates;
    speedEnableBits = state.mask;
    phyUi->lineRate->setText(Config::lineRateText(state.highest));
    return state.highestIndex;
}

void cpridlg::updatedSpeedEnable()
{
    const QVector<QCheckBox *> classBoxes = speedClassBoxes();
    const auto chosen = std::find_if(classBoxes.cbegin(), classBoxes.cend(), checked);
    if (chosen == classBoxes.cend())
        return;
    const Config::SpeedClass &speedClass =
        Config::speedClasses().at(int(chosen - classBoxes.cbegin()));
    const QVector<QCheckBox *> rates = rateBoxes();
    // A check on a rate the class withdraws moves to the fallback rate.
    const auto moveCheck = [&] {
        if (anyChecked(rates, speedClass.moveCheckFrom, checked))
            rates.at(Config::FallbackRateIndex)->setChecked(true);
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
}

// ---- Clocking controls ----

void cpridlg::updatePLLSel()
{
    phyUi->PLL_Selection->clear();
    const double rate = Config::withoutUnit(phyUi->lineRate->displayText()).toDouble();
    phyUi->PLL_Selection->addItems(Serdes::offeredPlls(phyUi->ChannelSel->currentText(), rate));
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
    return Serdes::refClockReachesLane(phyUi->refClkSource->currentText(),
                                       phyUi->ChannelSel->currentText());
}

// ---- Interactive field rules ----

void cpridlg::updateRealTimeVendor()
{
    coreUi->RealTimeVendor->setEnabled(
        anyChecked(rateBoxes(), Config::realTimeVendorRates(), enabledAndChecked));
}

// Only the check states count here, not whether the boxes are enabled.
void cpridlg::updateEncodingAndDecoding()
{
    if (!Serdes::inFamily(Serdes::BothFamilies, device().device()))
        return;
    const bool coded64b66b = anyChecked(rateBoxes(), Config::coded64b66bRates(), checked);
    phyUi->groupBoxEncodingAndDecoding->setEnabled(coded64b66b);
    phyUi->groupBoxEncodingAndDecoding->setVisible(coded64b66b);
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
    const QString seed =
        FieldRules::scramblerSeed(coreUi->ScramblerSeed->displayText(), &converted);
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
    if (FieldRules::ffeC0Accepted(c0))
        return true;
    QMessageBox::about(this, Texts::WarningTitle, Texts::C0TooSmall);
    return false;
}

void cpridlg::onFFEModeChanged()
{
    const QString mode = afeUi->ffeModeCombox->currentText();
    if (mode == Config::AutoMode) {
        afeUi->cmSpinBox->setValue(FieldRules::AutoFfeTap);
        afeUi->c1SpinBox->setValue(FieldRules::AutoFfeTap);
        setAllEnabled({afeUi->cmSpinBox, afeUi->c1SpinBox, afeUi->label, afeUi->label_2}, false);
    } else if (mode == Config::ManualMode) {
        setAllEnabled({afeUi->cmSpinBox, afeUi->c1SpinBox, afeUi->label, afeUi->label_2}, true);
    }
}

void cpridlg::onEqualizationModeChanged()
{
    const QString mode = afeUi->equalizationModeCombox->currentText();
    if (mode == Config::AutoMode) {
        afeUi->attSpinBox->setValue(FieldRules::autoAttenuation());
        afeUi->attSpinBox->setEnabled(false);
        afeUi->boostSpinBox->setValue(FieldRules::autoBoost());
        afeUi->boostSpinBox->setEnabled(false);
        setAllEnabled({afeUi->label_14, afeUi->label_15}, false);
    } else if (mode == Config::ManualMode) {
        setAllEnabled({afeUi->attSpinBox, afeUi->boostSpinBox, afeUi->label_14, afeUi->label_15},
                      true);
    }
}

void cpridlg::resetFlagforBias()
{
    biasFlag = BiasUndecided;
}

// Another core's bias of the quad comes first, then the one chosen in this
// dialog, then the default.
void cpridlg::updateBiasDefaultValue()
{
    int bias = FieldRules::DefaultBias;
    if (const Serdes::QuadBias *quad = Serdes::quadOfLane(phyUi->ChannelSel->currentText())) {
        if (registry()->globalData().contains(quad->registryKey))
            bias = registry()->getData(quad->registryKey).toInt();
        else if (quadBias.contains(quad->quadName))
            bias = quadBias.value(quad->quadName).toInt();
    }
    afeUi->biasSpinBox->setValue(bias);
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

} // namespace IPCPRI
