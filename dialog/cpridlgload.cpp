// Loading a stored record into the dialog, and the table of the widgets
// that hold one key each, which loading and collecting both walk.

#include "cpridlg.h"
#include "cpridlgfields.h"

#include "dialogtexts.h"
#include "dialogwidgets.h"
#include "loaddefaults.h"
#include "forms/tabforms.h"
#include "../config/linerates.h"
#include "../config/speedrules.h"
#include "../serdes/resourcenames.h"

namespace IPCPRI {

namespace {

using namespace DialogWidgets;
namespace Key = Config::Key;

} // namespace

// In the order loading requires: a widget's slots run as it changes, so the
// lane comes before the line rate (whose text refills the PLLs offered),
// the rate before the PLL, the source before its frequency, the modes
// before their values, the taps before C0, and the bias decision after the
// lane change that clears it.
QVector<cpridlg::FieldBinding> cpridlg::fieldBindings() const
{
    using Kind = FieldBinding::Kind;
    QVector<FieldBinding> rows;
    const QVector<QCheckBox *> classes = speedClassBoxes();
    for (int i = 0; i < classes.size(); ++i)
        rows.append({Config::speedClasses().at(i).key, classes.at(i), Kind::EnabledBox});
    const QVector<QCheckBox *> rates = rateBoxes();
    for (int i = 0; i < rates.size(); ++i) {
        if (rates.at(i))
            rows.append({Config::rateRows().at(i).key, rates.at(i), Kind::EnabledBox});
    }
    rows += {
        {Key::Master, coreUi->Master, Kind::EnabledBox},
        {Key::Slave, coreUi->Slave, Kind::EnabledBox},
        {Key::Mii, coreUi->MII, Kind::EnabledBox},
        {Key::Gmii, coreUi->GMII, Kind::EnabledBox},
        {Key::FixedConfigEnable, coreUi->FixedConfigEnable, Kind::EnabledBox},
        {Key::ConfigClkPeriod, coreUi->ConfigClkPeriod, Kind::Text},
        {Key::RealTimeVendor, coreUi->RealTimeVendor, Kind::EnabledBox},
        {Key::ProtocolVersion1, coreUi->ProtocolVersion1, Kind::EnabledBox},
        {Key::ProtocolVersion2, coreUi->ProtocolVersion2, Kind::EnabledBox},
        {Key::EthernetPointer, coreUi->EthernetPointer, Kind::MaskedText},
        {Key::HdlcRate, coreUi->HDLCRate, Kind::MaskedText},
        {Key::HdlcByte, coreUi->HDLCByte, Kind::MaskedText},
        {Key::HdlcMask, coreUi->HDLCMask, Kind::MaskedText},
        {Key::ScramblerSeed, coreUi->ScramblerSeed, Kind::MaskedText},
        {Key::ChannelSelection, phyUi->ChannelSel, Kind::ChoiceIfOffered},
        {Key::LineRate, phyUi->lineRate, Kind::Text},
        {Key::RefClkSource, phyUi->refClkSource, Kind::Choice},
        {Key::RefClkFrequency, phyUi->refClkFreq, Kind::Text},
        {Key::PllSelection, phyUi->PLL_Selection, Kind::ChoiceIfOffered},
        {Key::LoopbackMode, phyUi->LoopbackMode, Kind::Choice},
        {Key::Mode64b66b, phyUi->comboBox64B_66B_Mode, Kind::Choice,
         phyUi->groupBoxEncodingAndDecoding},
        {Key::DifferentialSwing, afeUi->differeSwingComboBox, Kind::Choice},
        {Key::FfeMode, afeUi->ffeModeCombox, Kind::Choice},
        {Key::FfeCm, afeUi->cmSpinBox, Kind::Value},
        {Key::FfeC1, afeUi->c1SpinBox, Kind::Value},
        {Key::FfeC0, afeUi->c0Lael, Kind::Label},
        {Key::SdThreshold, afeUi->sdThresholdComboBox, Kind::Choice},
        {Key::EqualizationMode, afeUi->equalizationModeCombox, Kind::Choice},
        {Key::Att, afeUi->attSpinBox, Kind::Value},
        {Key::Boost, afeUi->boostSpinBox, Kind::Value},
        {Key::ChangedAllOfBias, afeUi->biasSpinBox, Kind::BiasDecision},
        {Key::LoopbackPorts, optUi->checkBoxLoopBackPorts, Kind::CheckedBox},
        {Key::PrbsGeneratorPorts, optUi->checkBoxPPGP, Kind::CheckedBox},
        {Key::DifferentialSwingPorts, optUi->checkBoxDifferSwingPorts, Kind::CheckedBox},
        {Key::FfePorts, optUi->checkBoxFFEPorts, Kind::CheckedBox},
        {Key::PrbsCheckerPorts, optUi->checkBoxPPCP, Kind::CheckedBox},
        {Key::EqualizationPorts, optUi->checkBoxEqualizationPorts, Kind::CheckedBox},
        {Key::BiasPorts, optUi->checkBoxBIASPorts, Kind::CheckedBox},
        {Key::DrpPorts, optUi->checkBoxDRPPort, Kind::CheckedBox},
    };
    return rows;
}

bool cpridlg::loadConfiguration(const QMap<QString, QVariant> &config)
{
    if (config.value(Key::Version).toString() != Config::FormatVersion) {
        showErrorBox(Texts::IncompatibleVersion);
        return false;
    }
    applyConfiguration(config);
    return true;
}

// Nothing is blocked: each change runs the slots its widget is wired to.
// Checked states change without clicks, so the speed rules do not run.
void cpridlg::applyConfiguration(const QMap<QString, QVariant> &config)
{
    uiSetSynthesisTool(config.value(Key::SynthesisTool).toString());
    uiSetLanguageIndex(config.value(Key::Language, 0).toInt());
    for (const FieldBinding &field : fieldBindings()) {
        const QVariant value = config.value(field.key, Loading::missingValue(field.key));
        if (field.kind != FieldBinding::Kind::BiasDecision) {
            field.write(value);
            continue;
        }
        // The bias is the quad's, held by the registry, not the record's.
        const QMap<QString, QVariant> shared = registry()->globalData();
        const Serdes::QuadBias *quad = Serdes::quadOfLane(phyUi->ChannelSel->currentText());
        if (quad && shared.contains(quad->registryKey))
            afeUi->biasSpinBox->setValue(registry()->getData(quad->registryKey).toInt());
        if (config.contains(field.key))
            biasFlag = value.toBool() ? BiasForWholeQuad : BiasDeclined;
    }
}

} // namespace IPCPRI
