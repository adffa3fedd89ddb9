#include "serdes.h"

#include "message.h"
#include "pllmodel_p.h"
#include "refclocks_p.h"
#include "serdesfunctions.h"

#include <QRegularExpression>

namespace IPSERDESIP {

using namespace Internal;

namespace {

const int quadCount = 2;
const int lanesPerQuad = 4;

QString laneKeyOf(const QString &laneDisplayName)
{
    return laneDisplayName.toUpper().replace(QLatin1Char(' '), QLatin1Char('_'));
}

// "Q1_LANE2" -> 1, or -1 for a text that names no lane.
int quadOfLaneKey(const QString &laneKey)
{
    static const QRegularExpression pattern(QStringLiteral("^Q(\\d)_LANE(\\d)$"));
    const QRegularExpressionMatch match = pattern.match(laneKey);
    if (!match.hasMatch())
        return -1;
    const int quad = match.captured(1).toInt();
    const int lane = match.captured(2).toInt();
    return quad < quadCount && lane < lanesPerQuad ? quad : -1;
}

// "Q0_QPLL1" -> quad 0, type "QPLL1"; the quad is -1 for a text that names no QPLL.
int quadOfQpllKey(const QString &pllKey, QString *typeName = nullptr)
{
    static const QRegularExpression pattern(QStringLiteral("^Q(\\d)_(QPLL[01])$"));
    const QRegularExpressionMatch match = pattern.match(pllKey);
    if (!match.hasMatch() || match.captured(1).toInt() >= quadCount)
        return -1;
    if (typeName)
        *typeName = match.captured(2);
    return match.captured(1).toInt();
}

bool pllServesLane(const QString &pllKey, const QString &laneKey)
{
    const QString quad = laneKey.left(2);
    if (pllKey == quad + QLatin1String("_QPLL0") || pllKey == quad + QLatin1String("_QPLL1"))
        return true;
    return pllKey == quad + QLatin1String("_CPLL") + laneKey.right(1);
}

} // namespace

serdes::serdes() = default;

serdes *serdes::instance()
{
    static serdes registry;
    return &registry;
}

QStringList serdes::deviceLanes() const
{
    if (!m_device.isNull())
        return m_device.lanes();
    QStringList all;
    for (int quad = 0; quad < quadCount; ++quad) {
        for (int lane = 0; lane < lanesPerQuad; ++lane)
            all << QStringLiteral("Q%1 Lane%2").arg(quad).arg(lane);
    }
    return all;
}

QStringList serdes::notOccupiedLanes() const
{
    QStringList free;
    for (const QString &lane : deviceLanes()) {
        if (!m_routes.contains(laneKeyOf(lane)))
            free << lane;
    }
    return free;
}

QStringList serdes::producibleQpllsOfQuad(int quad, double lineRateGbps) const
{
    QStringList plls;
    for (const QString &type : {QStringLiteral("QPLL0"), QStringLiteral("QPLL1")}) {
        const QString key = QStringLiteral("Q%1_%2").arg(quad).arg(type);
        const auto it = m_pllRates.constFind(key);
        if (it != m_pllRates.constEnd() && producesRate(*pllType(type), *it, lineRateGbps))
            plls << type;
    }
    return plls;
}

QStringList serdes::checkPLLforQuad0(double lineRateGbps) const
{
    return producibleQpllsOfQuad(0, lineRateGbps);
}

QStringList serdes::checkPLLforQuad1(double lineRateGbps) const
{
    return producibleQpllsOfQuad(1, lineRateGbps);
}

bool serdes::checkPllEnable(const QString &pllKey) const
{
    return m_pllRates.contains(pllKey);
}

double serdes::getFreqByRefsrc(const QString &refDisplayName) const
{
    const auto it = m_references.find(refsrcOptTransforSerdesName(refDisplayName));
    if (it == m_references.end() || it->second.userCount <= 0)
        return 0.0;
    return it->second.frequency;
}

bool serdes::checkAccess(const QString &refSerdesName, const QString &laneAccessName) const
{
    static const QRegularExpression pattern(QStringLiteral("^(Q\\d_LANE\\d)_(RX|TX)$"));
    const QRegularExpressionMatch match = pattern.match(laneAccessName);
    const RefClock *clock = refClockBySerdesName(refSerdesName);
    if (!match.hasMatch() || !clock)
        return false;
    const QString laneKey = match.captured(1);
    const int quad = quadOfLaneKey(laneKey);
    bool onDevice = false;
    for (const QString &lane : deviceLanes())
        onDevice = onDevice || laneKeyOf(lane) == laneKey;
    return quad >= 0 && onDevice && reachesQuad(*clock, quad);
}

REF_SOURCE *serdes::FormStringToREFSPtr(const QString &refSerdesName)
{
    if (!refClockBySerdesName(refSerdesName))
        return nullptr;
    REF_SOURCE &source = m_references[refSerdesName];
    source.serdesName = refSerdesName;
    return &source;
}

bool serdes::checkRoute(const QStringList &laneKeys, const QStringList &pllKeys,
                        const QStringList &refRoutingNames, const QStringList &refFrequencies)
{
    QStringList onDevice;
    for (const QString &lane : deviceLanes())
        onDevice << laneKeyOf(lane);
    // Check every lane first, so that a refused route registers nothing.
    for (int i = 0; i < laneKeys.size(); ++i) {
        const QString &lane = laneKeys.at(i);
        const RefClock *clock = refClockByRoutingName(refRoutingNames.value(i));
        const double frequency = refFrequencies.value(i).toDouble();
        if (!onDevice.contains(lane) || m_routes.contains(lane) || !clock
            || !reachesQuad(*clock, quadOfLaneKey(lane))
            || !pllServesLane(pllKeys.value(i), lane))
            return false;
        const auto used = m_references.find(clock->serdesName);
        if (used != m_references.end() && used->second.userCount > 0
            && used->second.frequency != frequency)
            return false;
    }
    for (int i = 0; i < laneKeys.size(); ++i) {
        const RefClock *clock = refClockByRoutingName(refRoutingNames.value(i));
        REF_SOURCE *source = FormStringToREFSPtr(clock->serdesName);
        ++source->userCount;
        source->frequency = refFrequencies.value(i).toDouble();
        m_routes.insert(laneKeys.at(i), Route{pllKeys.value(i), clock->serdesName, false, true});
    }
    return true;
}

void serdes::releaseReference(const QString &refSerdesName)
{
    const auto it = m_references.find(refSerdesName);
    if (it == m_references.end() || it->second.userCount <= 0)
        return;
    if (--it->second.userCount == 0)
        it->second.frequency = 0.0;
}

void serdes::resetLane(const QString &laneKey, bool keepClocking)
{
    const auto it = m_routes.find(laneKey);
    if (it == m_routes.end())
        return;
    const Route route = *it;
    m_routes.erase(it);
    if (keepClocking)
        return;
    releaseReference(route.refSerdesName);
    if (route.ownsPll)
        m_pllRates.remove(route.pllKey);
}

void serdes::setData(const QString &key, QVariant value)
{
    m_shared.insert(key, value);
}

QVariant serdes::getData(const QString &key) const
{
    return m_shared.value(key);
}

QMap<QString, QVariant> serdes::globalData() const
{
    return m_shared;
}

QString serdes::workingDir() const
{
    return m_workingDir;
}

void serdes::setGlobalResetEnableParam(QStringList &settings)
{
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

void serdes::reset()
{
    m_device = DEV::DeviceArg();
    m_workingDir.clear();
    m_shared.clear();
    m_pllRates.clear();
    m_references.clear();
    m_routes.clear();
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

bool serdes::occupy(const Message &resources)
{
    QStringList onDevice;
    for (const QString &lane : deviceLanes())
        onDevice << laneKeyOf(lane);
    for (const QString &lane : resources.laneList) {
        if (!onDevice.contains(lane) || m_routes.contains(lane))
            return false;
    }
    for (int i = 0; i < resources.laneList.size(); ++i) {
        Route route;
        route.pllKey = resources.pllList.value(i);
        if (quadOfQpllKey(route.pllKey) >= 0 && !m_pllRates.contains(route.pllKey))
            route.ownsPll = enablePll(route.pllKey, resources.lineRates.value(i).toDouble());
        if (const RefClock *clock = refClockByRoutingName(resources.refClockList.value(i))) {
            REF_SOURCE *source = FormStringToREFSPtr(clock->serdesName);
            if (source->userCount++ == 0)
                source->frequency = resources.refFreqList.value(i).toDouble();
            route.refSerdesName = clock->serdesName;
        }
        m_routes.insert(resources.laneList.at(i), route);
    }
    return true;
}

bool serdes::occupyLane(const QString &laneDisplayName)
{
    Message lane;
    lane.laneList << laneKeyOf(laneDisplayName);
    return deviceLanes().contains(laneDisplayName) && occupy(lane);
}

bool serdes::enablePll(const QString &pllKey, double lineRateGbps)
{
    QString typeName;
    if (quadOfQpllKey(pllKey, &typeName) < 0)
        return false;
    const std::optional<double> vco = vcoForRate(*pllType(typeName), lineRateGbps);
    if (!vco)
        return false;
    m_pllRates.insert(pllKey, *vco);
    return true;
}

bool serdes::fixReference(const QString &refDisplayName, double frequencyMHz, int users)
{
    const RefClock *clock = refClockByDisplayName(refDisplayName);
    if (!clock)
        return false;
    REF_SOURCE *source = FormStringToREFSPtr(clock->serdesName);
    source->userCount = users;
    source->frequency = frequencyMHz;
    return true;
}

QStringList serdes::occupiedLanes() const
{
    QStringList lanes;
    for (auto it = m_routes.cbegin(); it != m_routes.cend(); ++it) {
        if (!it->pending)
            lanes << it.key();
    }
    return lanes;
}

QStringList serdes::pendingRoutes() const
{
    QStringList lanes;
    for (auto it = m_routes.cbegin(); it != m_routes.cend(); ++it) {
        if (it->pending)
            lanes << it.key();
    }
    return lanes;
}

} // namespace IPSERDESIP
