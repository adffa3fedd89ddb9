#include "serdes.h"

#include "message.h"
#include "pllmodel_p.h"
#include "refclocks_p.h"
#include "serdesfunctions.h"

#include <QDir>
#include <QRegularExpression>

#include <algorithm>

namespace IPSERDESIP {

using namespace Internal;

namespace {

const int quadCount = 2;
const int lanesPerQuad = 4;
const int maxBias = 15;

// The holder name of a route that checkRoute registered.
const QString PendingRoute = QStringLiteral("a pending route");
const QString ProjectHolder = QStringLiteral("the project's shared values");

// Why something cannot be placed.
const QString CoreWithoutLane = QStringLiteral("core %1 names no lane");
const QString LaneNotOnDevice = QStringLiteral("lane %1 is not on device %2");
const QString LaneHeld = QStringLiteral("lane %1 is held by %2");
const QString RefUnknown = QStringLiteral("reference clock \"%1\" does not exist");
const QString RefUnreachable = QStringLiteral("reference clock %1 does not reach lane %2");
const QString RefNoFrequency = QStringLiteral("reference clock %1 cannot run at %2 MHz");
const QString RefFrequency =
    QStringLiteral("reference clock %1 is set to %2 MHz by %3, not %4 MHz");
const QString PllUnknown = QStringLiteral("PLL \"%1\" does not exist");
const QString PllNotForLane = QStringLiteral("PLL %1 cannot clock lane %2");
const QString PllReference = QStringLiteral("PLL %1 is fed from %2 by %3, not from %4");
const QString PllVco = QStringLiteral("PLL %1 is set to %2 GHz by %3 and cannot produce %4 Gbps");
const QString PllRate = QStringLiteral("PLL %1 cannot produce %2 Gbps");
const QString BiasUnknown = QStringLiteral("\"%1\" is no quad bias");
const QString BiasRange = QStringLiteral("%1 takes 0 to %2, not %3");
const QString BiasHeld = QStringLiteral("%1 is fixed to %2 by %3, not %4");

QString number(double value)
{
    return QString::number(value, 'g', 15);
}

QString logArg(const QString &text)
{
    return text;
}
QString logArg(double value)
{
    return number(value);
}
QString logArg(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}
QString logArg(const QVariant &value)
{
    return value.toString();
}
QString logArg(const QStringList &list)
{
    return QLatin1Char('[') + list.join(QLatin1String(", ")) + QLatin1Char(']');
}

QString holderText(const QString &holder)
{
    return holder.isEmpty() ? ProjectHolder : holder;
}

bool refuse(Conflict *conflict, Conflict::Kind kind, const QString &resource, const QString &holder,
            const QString &message)
{
    if (conflict)
        *conflict = Conflict{kind, resource, holder, message};
    return false;
}

QString laneKeyOf(const QString &laneDisplayName)
{
    return laneDisplayName.toUpper().replace(QLatin1Char(' '), QLatin1Char('_'));
}

QString laneDisplayOf(const QString &laneKey)
{
    return QString(laneKey).replace(QLatin1String("_LANE"), QLatin1String(" Lane"));
}

// "Q1_LANE2" -> 1, or -1 for a text that names no lane.
int quadOfLaneKey(const QString &laneKey)
{
    static const QRegularExpression pattern(QStringLiteral("^Q([01])_LANE[0-3]$"));
    const QRegularExpressionMatch match = pattern.match(laneKey);
    return match.hasMatch() ? match.captured(1).toInt() : -1;
}

// "Q0_QPLL1" and "Q1_CPLL3" name PLLs; anything else gives null.
const PllType *pllTypeOfKey(const QString &pllKey)
{
    static const QRegularExpression pattern(QStringLiteral("^Q[01]_(?:(QPLL[01])|(CPLL)[0-3])$"));
    const QRegularExpressionMatch match = pattern.match(pllKey);
    return match.hasMatch() ? pllType(match.captured(1) + match.captured(2)) : nullptr;
}

// A quad's QPLLs clock each of its lanes; a channel PLL only its own lane.
bool pllServesLane(const QString &pllKey, const QString &laneKey)
{
    const QString quad = laneKey.left(2);
    if (pllKey == quad + QLatin1String("_QPLL0") || pllKey == quad + QLatin1String("_QPLL1"))
        return true;
    return pllKey == quad + QLatin1String("_CPLL") + laneKey.right(1);
}

template<typename Holdings, typename Pred>
auto firstWhere(const Holdings &holdings, Pred pred) -> decltype(&holdings.front())
{
    const auto it = std::find_if(holdings.cbegin(), holdings.cend(), pred);
    return it == holdings.cend() ? nullptr : &*it;
}

} // namespace

serdes::serdes() = default;

serdes *serdes::instance()
{
    static serdes registry;
    return &registry;
}

template<typename... Args>
void serdes::logCall(const char *name, const Args &...args) const
{
    m_callLog << QLatin1String(name) + QLatin1Char('(')
                     + QStringList{logArg(args)...}.join(QLatin1String(", ")) + QLatin1Char(')');
}

QStringList serdes::deviceLaneKeys() const
{
    QStringList keys;
    if (!m_device.isNull()) {
        for (const QString &lane : m_device.lanes())
            keys << laneKeyOf(lane);
        return keys;
    }
    for (int quad = 0; quad < quadCount; ++quad) {
        for (int lane = 0; lane < lanesPerQuad; ++lane)
            keys << QStringLiteral("Q%1_LANE%2").arg(quad).arg(lane);
    }
    return keys;
}

QStringList serdes::notOccupiedLanes() const
{
    logCall("notOccupiedLanes");
    QStringList free;
    for (const QString &lane : deviceLaneKeys()) {
        if (!firstWhere(m_holdings, [&](const Holding &h) { return h.laneKey == lane; }))
            free << laneDisplayOf(lane);
    }
    return free;
}

QStringList serdes::runningQpllsOfQuad(int quad, double lineRateGbps) const
{
    QStringList plls;
    for (const QString &type : {QStringLiteral("QPLL0"), QStringLiteral("QPLL1")}) {
        const QString key = QStringLiteral("Q%1_%2").arg(quad).arg(type);
        const Holding *running = firstWhere(
            m_holdings, [&](const Holding &h) { return h.pllKey == key && h.vcoGHz > 0.0; });
        if (running && producesRate(*pllType(type), running->vcoGHz, lineRateGbps))
            plls << type;
    }
    return plls;
}

QStringList serdes::checkPLLforQuad0(double lineRateGbps) const
{
    logCall("checkPLLforQuad0", lineRateGbps);
    return runningQpllsOfQuad(0, lineRateGbps);
}

QStringList serdes::checkPLLforQuad1(double lineRateGbps) const
{
    logCall("checkPLLforQuad1", lineRateGbps);
    return runningQpllsOfQuad(1, lineRateGbps);
}

bool serdes::checkPllEnable(const QString &pllKey) const
{
    logCall("checkPllEnable", pllKey);
    return firstWhere(m_holdings, [&](const Holding &h) { return h.pllKey == pllKey; });
}

double serdes::getFreqByRefsrc(const QString &refDisplayName) const
{
    logCall("getFreqByRefsrc", refDisplayName);
    const RefClock *clock = refClockByDisplayName(refDisplayName);
    const Holding *user =
        firstWhere(m_holdings, [&](const Holding &h) { return clock && h.ref == clock; });
    return user ? user->refMHz : 0.0;
}

bool serdes::checkAccess(const QString &refSerdesName, const QString &laneAccessName) const
{
    logCall("checkAccess", refSerdesName, laneAccessName);
    static const QRegularExpression pattern(QStringLiteral("^(Q\\d_LANE\\d)_(RX|TX)$"));
    const QRegularExpressionMatch match = pattern.match(laneAccessName);
    const RefClock *clock = refClockBySerdesName(refSerdesName);
    const QString laneKey = match.captured(1);
    return match.hasMatch() && clock && deviceLaneKeys().contains(laneKey)
           && reachesQuad(*clock, quadOfLaneKey(laneKey));
}

REF_SOURCE *serdes::FormStringToREFSPtr(const QString &refSerdesName)
{
    logCall("FormStringToREFSPtr", refSerdesName);
    const RefClock *clock = refClockBySerdesName(refSerdesName);
    if (!clock)
        return nullptr;
    REF_SOURCE &source = m_references[refSerdesName];
    source.serdesName = refSerdesName;
    source.userCount = 0;
    source.frequency = 0.0;
    for (const Holding &h : qAsConst(m_holdings)) {
        if (h.ref == clock) {
            ++source.userCount;
            source.frequency = h.refMHz;
        }
    }
    return &source;
}

bool serdes::checkRoute(const QStringList &laneKeys, const QStringList &pllKeys,
                        const QStringList &refRoutingNames, const QStringList &refFrequencies)
{
    logCall("checkRoute", laneKeys, pllKeys, refRoutingNames, refFrequencies);
    const int before = m_holdings.size();
    for (int i = 0; i < laneKeys.size(); ++i) {
        if (!placeEntry(PendingRoute, laneKeys.at(i), pllKeys.value(i), refRoutingNames.value(i),
                        refFrequencies.value(i), std::nullopt, nullptr)) {
            m_holdings.resize(before);
            return false;
        }
    }
    return true;
}

void serdes::resetLane(const QString &laneKey, bool flag)
{
    logCall("resetLane", laneKey, flag);
    m_holdings.erase(
        std::remove_if(m_holdings.begin(), m_holdings.end(),
                       [&](const Holding &h) { return h.pending && h.laneKey == laneKey; }),
        m_holdings.end());
}

void serdes::setData(const QString &key, QVariant value)
{
    logCall("setData", key, value);
    m_shared.insert(key, value);
    QStringList &holders = m_sharedHolders[key];
    if (!holders.contains(QString()))
        holders << QString();
}

QVariant serdes::getData(const QString &key) const
{
    logCall("getData", key);
    return m_shared.value(key);
}

QMap<QString, QVariant> serdes::globalData() const
{
    logCall("globalData");
    return m_shared;
}

QString serdes::workingDir() const
{
    logCall("workingDir");
    return m_workingDir.isEmpty() ? QDir::currentPath() : m_workingDir;
}

void serdes::setGlobalResetEnableParam(QStringList &settings)
{
    logCall("setGlobalResetEnableParam", settings);
    static const QRegularExpression quadEnable(QStringLiteral("^(q\\d)_enable true$"));
    QStringList added;
    for (const QString &line : qAsConst(settings)) {
        const QRegularExpressionMatch match = quadEnable.match(line);
        if (!match.hasMatch())
            continue;
        const QString reset = match.captured(1) + QLatin1String("_global_reset_en true");
        if (!settings.contains(reset) && !added.contains(reset))
            added << reset;
    }
    settings << added;
}

// ---- placing and releasing ----

bool serdes::placeEntry(const QString &holder, const QString &laneKey, const QString &pllKey,
                        const QString &refRoutingName, const QString &refMHz,
                        std::optional<double> lineRateGbps, Conflict *conflict)
{
    const RefClock *clock = refClockByRoutingName(refRoutingName);
    if (!clock)
        return refuse(conflict, Conflict::Unknown, refRoutingName, {},
                      RefUnknown.arg(refRoutingName));
    Holding holding{holder, laneKey, pllKey};
    holding.ref = clock;
    holding.refMHz = refMHz.toDouble();
    holding.pending = holder == PendingRoute;
    return place(holding, lineRateGbps, conflict);
}

bool serdes::place(Holding holding, std::optional<double> lineRateGbps, Conflict *conflict)
{
    if (!checkLane(holding, conflict) || !checkReference(holding, conflict)
        || !checkPll(holding, lineRateGbps, conflict))
        return false;
    m_holdings << holding;
    return true;
}

bool serdes::checkLane(const Holding &holding, Conflict *conflict) const
{
    const QString &lane = holding.laneKey;
    if (lane.isEmpty())
        return true;
    if (!deviceLaneKeys().contains(lane))
        return refuse(conflict, Conflict::Unknown, lane, {},
                      LaneNotOnDevice.arg(lane, m_device.isNull() ? QStringLiteral("(none)")
                                                                  : m_device.id()));
    const Holding *other =
        firstWhere(m_holdings, [&](const Holding &h) { return h.laneKey == lane; });
    if (other)
        return refuse(conflict, Conflict::Lane, lane, other->holder,
                      LaneHeld.arg(lane, holderText(other->holder)));
    return true;
}

bool serdes::checkReference(const Holding &holding, Conflict *conflict) const
{
    if (!holding.ref)
        return true;
    const QString &name = holding.ref->routingName;
    if (!holding.laneKey.isEmpty() && !reachesQuad(*holding.ref, quadOfLaneKey(holding.laneKey)))
        return refuse(conflict, Conflict::ReferenceClock, name, {},
                      RefUnreachable.arg(name, holding.laneKey));
    if (!(holding.refMHz > 0.0))
        return refuse(conflict, Conflict::ReferenceClock, name, {},
                      RefNoFrequency.arg(name, number(holding.refMHz)));
    const Holding *user =
        firstWhere(m_holdings, [&](const Holding &h) { return h.ref == holding.ref; });
    if (user && user->refMHz != holding.refMHz)
        return refuse(conflict, Conflict::ReferenceClock, name, user->holder,
                      RefFrequency.arg(name, number(user->refMHz), holderText(user->holder),
                                       number(holding.refMHz)));
    return true;
}

bool serdes::checkPll(Holding &holding, std::optional<double> lineRateGbps,
                      Conflict *conflict) const
{
    const QString &pll = holding.pllKey;
    if (pll.isEmpty())
        return true;
    const PllType *type = pllTypeOfKey(pll);
    if (!type)
        return refuse(conflict, Conflict::Unknown, pll, {}, PllUnknown.arg(pll));
    if (!holding.laneKey.isEmpty() && !pllServesLane(pll, holding.laneKey))
        return refuse(conflict, Conflict::Pll, pll, {}, PllNotForLane.arg(pll, holding.laneKey));
    const Holding *fed = firstWhere(m_holdings, [&](const Holding &h) {
        return h.pllKey == pll && h.ref && holding.ref && h.ref != holding.ref;
    });
    if (fed)
        return refuse(conflict, Conflict::Pll, pll, fed->holder,
                      PllReference.arg(pll, fed->ref->routingName, holderText(fed->holder),
                                       holding.ref->routingName));
    if (!lineRateGbps)
        return true; // a route does not say its rate: the generator checks it
    const Holding *running =
        firstWhere(m_holdings, [&](const Holding &h) { return h.pllKey == pll && h.vcoGHz > 0.0; });
    if (running && !producesRate(*type, running->vcoGHz, *lineRateGbps))
        return refuse(conflict, Conflict::Pll, pll, running->holder,
                      PllVco.arg(pll, number(running->vcoGHz), holderText(running->holder),
                                 number(*lineRateGbps)));
    const std::optional<double> vco =
        running ? std::optional<double>(running->vcoGHz) : vcoForRate(*type, *lineRateGbps);
    if (!vco)
        return refuse(conflict, Conflict::Pll, pll, {}, PllRate.arg(pll, number(*lineRateGbps)));
    holding.vcoGHz = *vco;
    return true;
}

bool serdes::occupy(const Message &core, Conflict *conflict)
{
    if (core.laneList.isEmpty())
        return refuse(conflict, Conflict::Unknown, {}, {}, CoreWithoutLane.arg(core.instanceName));
    const int before = m_holdings.size();
    for (int i = 0; i < core.laneList.size(); ++i) {
        if (!placeEntry(core.instanceName, core.laneList.at(i), core.pllList.value(i),
                        core.refClockList.value(i), core.refFreqList.value(i),
                        core.lineRates.value(i).toDouble(), conflict)) {
            m_holdings.resize(before);
            return false;
        }
    }
    return true;
}

bool serdes::release(const QString &instanceName)
{
    const int before = m_holdings.size();
    m_holdings.erase(
        std::remove_if(m_holdings.begin(), m_holdings.end(),
                       [&](const Holding &h) { return !h.pending && h.holder == instanceName; }),
        m_holdings.end());
    bool released = m_holdings.size() != before;
    for (auto it = m_sharedHolders.begin(); it != m_sharedHolders.end();) {
        released = it->removeAll(instanceName) > 0 || released;
        if (it->isEmpty()) {
            m_shared.remove(it.key());
            it = m_sharedHolders.erase(it);
        } else {
            ++it;
        }
    }
    return released;
}

namespace {

bool isQuadBiasKey(const QString &registryKey)
{
    static const QRegularExpression pattern(QStringLiteral("^Q[01]_BIAS$"));
    return pattern.match(registryKey).hasMatch();
}

} // namespace

QString serdes::quadBiasProblem(const QString &registryKey, int value)
{
    if (!isQuadBiasKey(registryKey))
        return BiasUnknown.arg(registryKey);
    if (value < 0 || value > maxBias)
        return BiasRange.arg(registryKey).arg(maxBias).arg(value);
    return QString();
}

bool serdes::claimQuadBias(const QString &registryKey, int value, const QString &holder,
                           Conflict *conflict)
{
    const QString problem = quadBiasProblem(registryKey, value);
    if (!problem.isEmpty())
        return refuse(conflict, isQuadBiasKey(registryKey) ? Conflict::QuadBias : Conflict::Unknown,
                      registryKey, {}, problem);
    QStringList others = m_sharedHolders.value(registryKey);
    others.removeAll(holder);
    const QVariant fixed = m_shared.value(registryKey);
    if (!others.isEmpty() && fixed.toInt() != value)
        return refuse(
            conflict, Conflict::QuadBias, registryKey, others.first(),
            BiasHeld.arg(registryKey, fixed.toString(), holderText(others.first())).arg(value));
    m_shared.insert(registryKey, value);
    QStringList &holders = m_sharedHolders[registryKey];
    if (!holders.contains(holder))
        holders << holder;
    return true;
}

QStringList serdes::users(const QString &resource) const
{
    QStringList holders = m_sharedHolders.value(resource);
    for (const Holding &h : qAsConst(m_holdings)) {
        const bool usesRef = h.ref && h.ref->routingName == resource;
        if (h.laneKey == resource || h.pllKey == resource || usesRef)
            holders << h.holder;
    }
    return holders;
}

// ---- the project's own set-up ----

void serdes::reset()
{
    m_device = DEV::DeviceArg();
    m_workingDir.clear();
    m_shared.clear();
    m_sharedHolders.clear();
    m_holdings.clear();
    m_references.clear();
    m_callLog.clear();
}

void serdes::setDevice(const DEV::DeviceArg &device)
{
    m_device = device;
}

DEV::DeviceArg serdes::device() const
{
    return m_device;
}

void serdes::setWorkingDir(const QString &dir)
{
    m_workingDir = dir;
}

bool serdes::occupyLane(const QString &laneDisplayName)
{
    Holding lane;
    lane.laneKey = laneKeyOf(laneDisplayName);
    return quadOfLaneKey(lane.laneKey) >= 0 && laneDisplayOf(lane.laneKey) == laneDisplayName
           && place(lane, std::nullopt, nullptr);
}

bool serdes::enablePll(const QString &pllKey, double lineRateGbps)
{
    Holding pll;
    pll.pllKey = pllKey;
    return place(pll, lineRateGbps, nullptr);
}

bool serdes::fixReference(const QString &refDisplayName, double frequencyMHz, int users)
{
    Holding reference;
    reference.ref = refClockByDisplayName(refDisplayName);
    reference.refMHz = frequencyMHz;
    for (int i = 0; i < users && reference.ref; ++i) {
        if (!place(reference, std::nullopt, nullptr))
            return false;
    }
    return reference.ref;
}

QStringList serdes::lanesWhere(bool pending) const
{
    QStringList lanes;
    for (const Holding &h : qAsConst(m_holdings)) {
        if (h.pending == pending && !h.laneKey.isEmpty())
            lanes << h.laneKey;
    }
    lanes.sort();
    return lanes;
}

QStringList serdes::occupiedLanes() const
{
    return lanesWhere(false);
}

QStringList serdes::pendingRoutes() const
{
    return lanesWhere(true);
}

QStringList serdes::callLog() const
{
    return m_callLog;
}

void serdes::clearCallLog()
{
    m_callLog.clear();
}

} // namespace IPSERDESIP
