#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>
#include <optional>

namespace IPCPRI {
namespace Serdes {

// One transceiver lane in each of the forms the core writes it in.
struct Lane
{
    QString displayName; // "Q0 Lane2": shown, stored and reported by the registry
    QString key;         // "Q0_LANE2": the registry's lane key
    QString prefix;      // "q0_ln2": starts the lane's setting lines
    QString quadName;    // "Q0"
    QString quadPrefix;  // "q0": starts the quad's setting lines
    QString cpllKey;     // "Q0_CPLL2": the lane's channel PLL
};

inline constexpr int LanesPerQuad = 4;

// The eight lanes, quad 0 first.
const QVector<Lane> &lanes();
// Exact, case-sensitive lookup; null for any other text.
const Lane *laneByDisplayName(const QString &displayName);
// Lane display name + direction -> "Q0_LANE0_RX" / "Q0_LANE0_TX".
QString laneAccessName(const QString &displayName, bool receive);

// PLL display names as offered in the dialog.
extern const QString Qpll0;
extern const QString Qpll1;
extern const QString Cpll;
// The PLL key of a PLL display name on a lane ("Q1_QPLL1", "Q1_CPLL2"), or
// nothing for a name other than the three.
std::optional<QString> pllKey(const Lane &lane, const QString &pllDisplayName);
// The key of a shared PLL of a quad ("Q0" + "QPLL0" -> "Q0_QPLL0").
QString qpllKey(const QString &quadName, const QString &pllDisplayName);

// Which devices offer a reference-clock source in the dialog.
enum class OfferedTo { EveryDevice, FirstFamily, SecondFamily, OtherDevices, NoDevice };

// A reference-clock source: display name and the pattern of its frequency line.
struct RefClock
{
    QString displayName;   // "Q0 REFCLK0"
    QString frequencyLine; // "q0_refclk0_freq %1"
    OfferedTo offeredTo;
};

const QVector<RefClock> &refClocks();
// The sources a device offers, in table order. The first family is tested
// first: a part in both lists gets the first family's sources.
QStringList offeredRefClocks(const QString &partName);
// The frequency line of a source with the frequency text as a number in
// the general format ("122.880" -> "q0_refclk0_freq 122.88"), or nothing
// for a source outside the table.
std::optional<QString> frequencyLine(const QString &source, const QString &frequencyText);
// A frequency in MHz as setting lines and the dialog write it: general
// format, six significant digits, no trailing zeros.
QString frequencyText(double mhz);

// Device families, as lists of part names separated by "/".
extern const QString FirstFamily;
extern const QString SecondFamily;
extern const QString BothFamilies;
// Exact, case-sensitive membership of a part name in a family list.
bool inFamily(const QString &familyList, const QString &partName);

// The quad shared receiver bias: registry keys and setting lines.
struct QuadBias
{
    QString quadName;    // "Q0": a lane display name of the quad starts with it
    QString registryKey; // "Q0_BIAS"
    QString settingLine; // "q0_rx_eq_bias %1"
};
const QVector<QuadBias> &quadBiases();
// The quad of a lane: the one whose name starts the lane display name
// ("Q1 Lane2" -> Q1), or null for a text that starts with neither.
const QuadBias *quadOfLane(const QString &laneDisplayName);
// The bias line for a lane display name, with the value valueOf gives for
// its quad; none for a text outside both quads.
QStringList biasLines(const QString &laneDisplayName,
                      const std::function<int(const QuadBias &)> &valueOf);

// What the registry's route check is given for one core, in its argument
// order: the lane key, the PLL key, the reference clock's routing name and
// frequency text. A lane outside the table gives neither a lane nor a PLL
// key; a PLL name other than the three gives no PLL key.
struct Route
{
    QStringList lanes;
    QStringList plls;
    QStringList refClocks;
    QStringList refFrequencies;
};
Route route(const QString &laneDisplayName, const QString &pllDisplayName,
            const QString &refDisplayName, const QString &frequencyText);

} // namespace Serdes
} // namespace IPCPRI
