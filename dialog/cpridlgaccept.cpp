// Collecting the dialog into a record, the Calculate action with its quad
// bias question, and accepting the dialog.

#include "cpridlg.h"
#include "cpridlgfields.h"

#include "dialogtexts.h"
#include "dialogwidgets.h"
#include "fieldrules.h"
#include "forms/tabforms.h"
#include "../config/descriptorkeys.h"
#include "../generate/generationnames.h"
#include "../serdes/clocking.h"
#include "../serdes/lanesettings.h"
#include "../serdes/resourcenames.h"

#include <ipcore/ipcorefunctions.h>
#include <ipserdes/generator.h>

#include <QDir>
#include <QIcon>
#include <QMessageBox>
#include <QPixmap>

#include <algorithm>

namespace IPCPRI {

namespace {

using namespace DialogWidgets;
namespace Key = Config::Key;

} // namespace

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
    in.inKnownFamily = Serdes::inFamily(Serdes::BothFamilies, device().device());
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

    // The lane's lines come first: they bring the line rate up to date,
    // which may refill the PLLs offered before the route names one.
    const QString lane = phyUi->ChannelSel->currentText();
    if (const Serdes::Lane *known = Serdes::laneByDisplayName(lane))
        appendLaneSettings(serdesSettings, known->prefix, known->quadPrefix);
    const QString source = phyUi->refClkSource->currentText();
    const Serdes::Route route =
        Serdes::route(lane, phyUi->PLL_Selection->currentText(), source, phyUi->refClkFreq->text());
    routeLanes = route.lanes;
    routePlls = route.plls;
    routeRefClocks = route.refClocks;
    routeRefFreqs = route.refFrequencies;
    if (const std::optional<QString> line =
            Serdes::frequencyLine(source, phyUi->refClkFreq->text()))
        serdesSettings << *line;
    registry()->setGlobalResetEnableParam(serdesSettings);

    ConfigMap &r = *resultConfig;
    r.insert(Key::TargetDevice, device().id());
    r.insert(Key::Type, ipInfo.value(Descriptor::Id).toString());
    r.insert(Key::Version, Config::FormatVersion);
    r.insert(Key::SynthesisTool, uiSynthesisTool());
    r.insert(Key::Language, uiLanguageIndex());
    r.insert(Key::File, fileName());
    r.insert(Key::Module, moduleName());
    for (const FieldBinding &field : fieldBindings()) {
        if (field.collected())
            r.insert(field.key, field.read());
    }
    // A fresh reading of the rate boxes, after the line rate was read.
    r.insert(Key::HighestSpeedIndex, checkSpeedEnable());
    r.insert(Key::SpeedEnablesRecord, speedEnableBits);
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
    const QVector<QCheckBox *> classBoxes = speedClassBoxes();
    if (std::none_of(classBoxes.cbegin(), classBoxes.cend(),
                     [](const QCheckBox *box) { return box->isChecked(); })) {
        showErrorBox(Texts::SelectSpeedSelection);
        return;
    }
    if (!calculateFFE_C0() || !collectConfiguration() || !onButtonCalculateClicked(false))
        return;
    const bool wholeQuad = biasFlag == BiasForWholeQuad;
    resultConfig->insert(Key::ChangedAllOfBias, wholeQuad);
    const Serdes::QuadBias *quad = Serdes::quadOfLane(phyUi->ChannelSel->currentText());
    if (wholeQuad && quad)
        registry()->setData(quad->registryKey, afeUi->biasSpinBox->value());
    QDialog::accept();
}

bool cpridlg::onButtonCalculateClicked(bool prompt)
{
    if (Serdes::refClockUsedAtOtherFrequency(phyUi->refClkSource->currentText(),
                                             phyUi->refClkFreq->displayText())) {
        QMessageBox::about(this, Texts::FailureTitle, Texts::RefClockUnreachable);
        return false;
    }
    const QString tempDir = Generate::coreOutputDir(createPath());
    if (!QDir(tempDir).exists()
        && !IPCore::makeDirs(tempDir, ipInfo.value(Descriptor::Name).toString()))
        return false;
    if (!collectConfiguration() || serdesSettings.isEmpty())
        return false;
    if (biasFlag == BiasUndecided) {
        promptQuadBias();
    } else if (biasFlag == BiasForWholeQuad) {
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
        QMessageBox::about(this, Texts::FailureTitle,
                           Texts::calculationFailure(serdesGenerator->getErrStringList()));
        return false;
    }
    if (prompt)
        QMessageBox::about(this, Texts::SucceedTitle, Texts::Succeed);
    return true;
}

// Asks whether the bias chosen here may change the bias of the other lanes
// of the lane's quad; a lane outside both quads has none to ask about.
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
            biasFlag = BiasDeclined;
            return;
        }
    }
    biasFlag = BiasForWholeQuad;
    if (const Serdes::QuadBias *quad = Serdes::quadOfLane(lane)) {
        serdesSettings << quad->settingLine.arg(bias);
        quadBias.insert(quad->quadName, bias);
    }
}

} // namespace IPCPRI
