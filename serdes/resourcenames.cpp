#include "resourcenames.h"

#include <ipserdes/serdesfunctions.h>

#include <algorithm>

namespace IPCPRI {
namespace Serdes {

namespace {

const QString AccessSeparator = QStringLiteral("_");
const QString ReceiveSuffix = QStringLiteral("_RX");
const QString TransmitSuffix = QStringLiteral("_TX");
const QString QpllKeyPattern = QStringLiteral("%1_%2");

} // namespace

const QVector<Lane> &lanes()
{
    static const QVector<Lane> table = {
        {QStringLiteral("Q0 Lane0"), QStringLiteral("Q0_LANE0"), QStringLiteral("q0_ln0"),
         QStringLiteral("Q0"), QStringLiteral("q0"), QStringLiteral("Q0_CPLL0")},
        {QStringLiteral("Q0 Lane1"), QStringLiteral("Q0_LANE1"), QStringLiteral("q0_ln1"),
         QStringLiteral("Q0"), QStringLiteral("q0"), QStringLiteral("Q0_CPLL1")},
        {QStringLiteral("Q0 Lane2"), QStringLiteral("Q0_LANE2"), QStringLiteral("q0_ln2"),
         QStringLiteral("Q0"), QStringLiteral("q0"), QStringLiteral("Q0_CPLL2")},
        {QStringLiteral("Q0 Lane3"), QStringLiteral("Q0_LANE3"), QStringLiteral("q0_ln3"),
         QStringLiteral("Q0"), QStringLiteral("q0"), QStringLiteral("Q0_CPLL3")},
        {QStringLiteral("Q1 Lane0"), QStringLiteral("Q1_LANE0"), QStringLiteral("q1_ln0"),
         QStringLiteral("Q1"), QStringLiteral("q1"), QStringLiteral("Q1_CPLL0")},
        {QStringLiteral("Q1 Lane1"), QStringLiteral("Q1_LANE1"), QStringLiteral("q1_ln1"),
         QStringLiteral("Q1"), QStringLiteral("q1"), QStringLiteral("Q1_CPLL1")},
        {QStringLiteral("Q1 Lane2"), QStringLiteral("Q1_LANE2"), QStringLiteral("q1_ln2"),
         QStringLiteral("Q1"), QStringLiteral("q1"), QStringLiteral("Q1_CPLL2")},
        {QStringLiteral("Q1 Lane3"), QStringLiteral("Q1_LANE3"), QStringLiteral("q1_ln3"),
         QStringLiteral("Q1"), QStringLiteral("q1"), QStringLiteral("Q1_CPLL3")},
    };
    return table;
}

const Lane *laneByDisplayName(const QString &displayName)
{
    const QVector<Lane> &table = lanes();
    const auto it = std::find_if(table.cbegin(), table.cend(),
                                 [&](const Lane &lane) { return lane.displayName == displayName; });
    return it == table.cend() ? nullptr : &*it;
}

QString laneAccessName(const QString &displayName, bool receive)
{
    QString name = displayName;
    name.replace(QLatin1Char(' '), AccessSeparator);
    name += receive ? ReceiveSuffix : TransmitSuffix;
    return name.toUpper();
}

QString qpllKey(const QString &quadName, const QString &pllDisplayName)
{
    return QpllKeyPattern.arg(quadName, pllDisplayName);
}

std::optional<QString> pllKey(const Lane &lane, const QString &pllDisplayName)
{
    if (pllDisplayName == Qpll0 || pllDisplayName == Qpll1)
        return qpllKey(lane.quadName, pllDisplayName);
    if (pllDisplayName == Cpll)
        return lane.cpllKey;
    return std::nullopt;
}

const QVector<RefClock> &refClocks()
{
    using O = OfferedTo;
    static const QVector<RefClock> table = {
        {QStringLiteral("Q0 REFCLK0"), QStringLiteral("q0_refclk0_freq %1"), O::EveryDevice},
        {QStringLiteral("Q0 REFCLK1"), QStringLiteral("q0_refclk1_freq %1"), O::EveryDevice},
        {QStringLiteral("Q1 REFCLK0"), QStringLiteral("q1_refclk0_freq %1"), O::OtherDevices},
        {QStringLiteral("Q1 REFCLK1"), QStringLiteral("q1_refclk1_freq %1"), O::OtherDevices},
        {QStringLiteral("Q0 REFCLK2"), QStringLiteral("q0_refclk2_freq %1"), O::FirstFamily},
        {QStringLiteral("Q0 REFCLK3"), QStringLiteral("q0_refclk3_freq %1"), O::FirstFamily},
        {QStringLiteral("Q0 REFIN0"), QStringLiteral("q0_gpio0_freq %1"), O::FirstFamily},
        {QStringLiteral("Q0 REFIN1"), QStringLiteral("q0_gpio1_freq %1"), O::FirstFamily},
        {QStringLiteral("Q0 REFIN2"), QStringLiteral("q0_gpio2_freq %1"), O::NoDevice},
        {QStringLiteral("Q0 REFIN3"), QStringLiteral("q0_gpio3_freq %1"), O::NoDevice},
        {QStringLiteral("Q0 REFIN"), QStringLiteral("q0_gpio_freq %1"), O::SecondFamily},
        {QStringLiteral("MCLK"), QStringLiteral("mclk_freq %1"), O::SecondFamily},
    };
    return table;
}

QStringList offeredRefClocks(const QString &partName)
{
    OfferedTo family = OfferedTo::OtherDevices;
    if (inFamily(FirstFamily, partName))
        family = OfferedTo::FirstFamily;
    else if (inFamily(SecondFamily, partName))
        family = OfferedTo::SecondFamily;
    QStringList offered;
    for (const RefClock &clock : refClocks()) {
        if (clock.offeredTo == OfferedTo::EveryDevice || clock.offeredTo == family)
            offered << clock.displayName;
    }
    return offered;
}

QString frequencyText(double mhz)
{
    return QString::number(mhz, 'g', 6);
}

std::optional<QString> frequencyLine(const QString &source, const QString &frequencyText)
{
    for (const RefClock &clock : refClocks()) {
        if (clock.displayName == source)
            return clock.frequencyLine.arg(Serdes::frequencyText(frequencyText.toDouble()));
    }
    return std::nullopt;
}

bool inFamily(const QString &familyList, const QString &partName)
{
    return familyList.split(QLatin1Char('/')).contains(partName);
}

const QVector<QuadBias> &quadBiases()
{
    static const QVector<QuadBias> table = {
        {QStringLiteral("Q0"), QStringLiteral("Q0_BIAS"), QStringLiteral("q0_rx_eq_bias %1")},
        {QStringLiteral("Q1"), QStringLiteral("Q1_BIAS"), QStringLiteral("q1_rx_eq_bias %1")},
    };
    return table;
}

const QuadBias *quadOfLane(const QString &laneDisplayName)
{
    const QVector<QuadBias> &quads = quadBiases();
    const auto it = std::find_if(quads.cbegin(), quads.cend(), [&](const QuadBias &quad) {
        return laneDisplayName.startsWith(quad.quadName);
    });
    return it == quads.cend() ? nullptr : &*it;
}

QStringList biasLines(const QString &laneDisplayName,
                      const std::function<int(const QuadBias &)> &valueOf)
{
    const QuadBias *quad = quadOfLane(laneDisplayName);
    return quad ? QStringList{quad->settingLine.arg(valueOf(*quad))} : QStringList{};
}

Route route(const QString &laneDisplayName, const QString &pllDisplayName,
            const QString &refDisplayName, const QString &frequencyText)
{
    Route r;
    if (const Lane *lane = laneByDisplayName(laneDisplayName)) {
        r.lanes << lane->key;
        if (const std::optional<QString> pll = pllKey(*lane, pllDisplayName))
            r.plls << *pll;
    }
    r.refClocks << IPSERDESIP::FromRefOptionToRef(refDisplayName);
    r.refFrequencies << frequencyText;
    return r;
}

} // namespace Serdes
} // namespace IPCPRI

// The texts the header names, defined once.
const QString IPCPRI::Serdes::Qpll0 = QStringLiteral("QPLL0");
const QString IPCPRI::Serdes::Qpll1 = QStringLiteral("QPLL1");
const QString IPCPRI::Serdes::Cpll = QStringLiteral("CPLL");
const QString IPCPRI::Serdes::FirstFamily = QStringLiteral("DVA-1/DVA-2");
const QString IPCPRI::Serdes::SecondFamily = QStringLiteral("DVB-1/DVB-2/DVB-3/DVB-4/DVB-5/DVB-6");
const QString IPCPRI::Serdes::BothFamilies =
    QStringLiteral("DVA-1/DVA-2/DVB-1/DVB-2/DVB-3/DVB-4/DVB-5/DVB-6");
