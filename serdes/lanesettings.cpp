#include "lanesettings.h"

#include "resourcenames.h"
#include "../config/linerates.h"

namespace IPCPRI {
namespace Serdes {

namespace {

// Setting line patterns: %1 is the lane or quad prefix, %2 the value.
namespace Line {
const QString PllSel = QStringLiteral("%1_pll_sel %2");
const QString LoopbackMode = QStringLiteral("%1_loopback_mode %2");
const QString Enable = QStringLiteral("%1_enable true");
const QString TxGearbox = QStringLiteral("%1_tx_gearbox %2");
const QString RxGearbox = QStringLiteral("%1_rx_gearbox %2");
const QString WordAlignPattern = QStringLiteral("%1_word_align_pattern k28.5");
const QString WordAlignPatternMask = QStringLiteral("%1_word_align_pattern_mask 1111111111");
const QString TxRate = QStringLiteral("%1_tx_rate %2");
const QString RxRate = QStringLiteral("%1_rx_rate %2");
const QString TxDifferentialSwing = QStringLiteral("%1_tx_differential_swing %2");
const QString TxFfeMode = QStringLiteral("%1_tx_ffe_mode %2");
const QString TxFfeCm = QStringLiteral("%1_tx_ffe_cm %2");
const QString TxFfeC1 = QStringLiteral("%1_tx_ffe_c1 %2");
const QString TxFfeC0 = QStringLiteral("%1_tx_ffe_c0 %2");
const QString RxSdThsel = QStringLiteral("%1_rx_sd_thsel %2");
const QString RxEqMode = QStringLiteral("%1_rx_eq_mode %2");
const QString RxAtt = QStringLiteral("%1_rx_att %2");
const QString RxBoost = QStringLiteral("%1_rx_boost %2");
} // namespace Line

// Encoding, word alignment and data width lines, by device family and line
// coding. The families' parts have separate transmit and receive encoders.
const QStringList &encodingLines(bool inKnownFamily, bool coded64b66b, bool fabric)
{
    static const QStringList listedFabric = {
        QStringLiteral("%1_tx_encode off"),        QStringLiteral("%1_rx_decode off"),
        QStringLiteral("%1_word_align disable"),   QStringLiteral("%1_pma_tx_width_mode 16"),
        QStringLiteral("%1_pma_rx_width_mode 16"),
    };
    static const QStringList listed64b66b = {
        QStringLiteral("%1_tx_encode 64b66b"),
        QStringLiteral("%1_rx_decode 64b66b"),
        QStringLiteral("%1_rx_64b66b_decode_10gbaser enable"),
        QStringLiteral("%1_word_align disable"),
        QStringLiteral("%1_pma_tx_width_mode 16"),
        QStringLiteral("%1_pma_rx_width_mode 16"),
    };
    static const QStringList listed8b10b = {
        QStringLiteral("%1_tx_encode 8b10b"),      QStringLiteral("%1_rx_decode 8b10b"),
        QStringLiteral("%1_word_align enable"),    QStringLiteral("%1_pma_tx_width_mode 20"),
        QStringLiteral("%1_pma_rx_width_mode 20"),
    };
    static const QStringList otherAbove = {
        QStringLiteral("%1_8b10b_encode disable"),
        QStringLiteral("%1_8b10b_decode disable"),
        QStringLiteral("%1_word_align disable"),
        QStringLiteral("%1_pma_width_mode 16"),
    };
    static const QStringList otherUpTo = {
        QStringLiteral("%1_8b10b_encode enable"),
        QStringLiteral("%1_8b10b_decode enable"),
        QStringLiteral("%1_word_align enable"),
        QStringLiteral("%1_pma_width_mode 20"),
    };
    if (!inKnownFamily)
        return coded64b66b ? otherAbove : otherUpTo;
    if (!coded64b66b)
        return listed8b10b;
    return fabric ? listedFabric : listed64b66b;
}

// Gearbox ratio: 1 up to 3.072 Gbps, 2 for 4.9152 and 6.144, 4 from 9.8304 Gbps on.
int gearbox(int rateIndex)
{
    if (rateIndex < Config::Rate49152Index)
        return 1;
    if (rateIndex < Config::Rate98304Index)
        return 2;
    return 4;
}

QVariant valueOr(const ConfigMap &record, const QString &key)
{
    return record.value(key, Config::keySpec(key)->initial);
}

const LineCoding coding8b10b{QStringLiteral("8B/10B"), 8, 10};
const LineCoding coding64b66b{QStringLiteral("64B/66B"), 64, 66};

} // namespace

const LineCoding &lineCoding(int rateIndex)
{
    return rateIndex > Config::Rate98304Index ? coding64b66b : coding8b10b;
}

LaneSettingsInput laneInputFromRecord(const ConfigMap &record, const QString &partName)
{
    namespace Key = Config::Key;
    LaneSettingsInput in;
    in.pll = record.value(Key::PllSelection).toString();
    in.loopback = record.value(Key::LoopbackMode).toString();
    in.rateIndex = record.value(Key::HighestSpeedIndex).toInt();
    in.placement64b66b = record.value(Key::Mode64b66b).toString();
    in.lineRate = record.value(Key::LineRate).toString();
    in.differentialSwing = valueOr(record, Key::DifferentialSwing).toString();
    in.ffeMode = valueOr(record, Key::FfeMode).toString();
    in.ffeCm = valueOr(record, Key::FfeCm).toInt();
    in.ffeC1 = valueOr(record, Key::FfeC1).toInt();
    in.ffeC0 = QString::number(valueOr(record, Key::FfeC0).toInt());
    in.sdThreshold = valueOr(record, Key::SdThreshold).toString();
    in.equalizationMode = valueOr(record, Key::EqualizationMode).toString();
    in.att = valueOr(record, Key::Att).toInt();
    in.boost = valueOr(record, Key::Boost).toInt();
    in.inKnownFamily = inFamily(BothFamilies, partName);
    return in;
}

void appendLaneSettings(QStringList &settings, const QString &lanePrefix, const QString &quadPrefix,
                        const LaneSettingsInput &in)
{
    const QString &p = lanePrefix;
    settings << Line::PllSel.arg(p, in.pll.toLower())
             << Line::LoopbackMode.arg(p, in.loopback.toLower()) << Line::Enable.arg(p)
             << Line::Enable.arg(quadPrefix);
    const bool coded64b66b = &lineCoding(in.rateIndex) == &coding64b66b;
    for (const QString &line : encodingLines(in.inKnownFamily, coded64b66b,
                                             in.placement64b66b == Config::FabricPlacement))
        settings << line.arg(p);
    const int ratio = gearbox(in.rateIndex);
    const QString rate = Config::withoutUnit(in.lineRate);
    settings << Line::TxGearbox.arg(p).arg(ratio) << Line::RxGearbox.arg(p).arg(ratio)
             << Line::WordAlignPattern.arg(p) << Line::WordAlignPatternMask.arg(p)
             << Line::TxRate.arg(p, rate) << Line::RxRate.arg(p, rate)
             << Line::TxDifferentialSwing.arg(p, in.differentialSwing)
             << Line::TxFfeMode.arg(p, in.ffeMode.toLower()) << Line::TxFfeCm.arg(p).arg(in.ffeCm)
             << Line::TxFfeC1.arg(p).arg(in.ffeC1) << Line::TxFfeC0.arg(p, in.ffeC0)
             << Line::RxSdThsel.arg(p, in.sdThreshold)
             << Line::RxEqMode.arg(p, in.equalizationMode.toLower())
             << Line::RxAtt.arg(p).arg(in.att) << Line::RxBoost.arg(p).arg(in.boost);
}

} // namespace Serdes
} // namespace IPCPRI
