#pragma once

#include "../hostglobal.h"
#include "../dev/devicearg.h"
#include "conflict.h"
#include "refsource.h"

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <map>
#include <optional>

namespace IPSERDESIP {

class Message;
namespace Internal {
struct RefClock;
}

// The project's transceiver resource registry. One object per process,
// reached through instance(); it is called from the GUI thread only and
// takes no locks.
//
// Names the registry uses:
//   lane display name "Q0 Lane0", lane key "Q0_LANE0",
//   lane access name "Q0_LANE0_RX" / "Q0_LANE0_TX",
//   PLL keys "Q0_QPLL0", "Q0_QPLL1", "Q0_CPLL0" ... "Q1_CPLL3",
//   reference clocks by routing name (FromRefOptionToRef, "Q0_REFCLK0") and
//   by SERDES name (refsrcOptTransforSerdesName, "q0_refclk0"),
//   shared values by key ("Q0_BIAS", "Q1_BIAS").
//
// The model. Holders take resources: a core of the project (named by its
// instance name "file:module"), a route a dialog is trying out (checkRoute,
// until resetLane), or the project's own set-up (occupyLane, enablePll,
// fixReference, setData: holder ""). Every resource knows its users:
// - a lane has at most one holder;
// - a PLL is enabled while it has users; a shared QPLL runs at one VCO from
//   one reference clock, so a further user must name that reference and a
//   line rate the VCO gives with one of the PLL's output dividers;
// - a reference clock runs at one frequency while it has users, and must
//   reach the lane's quad; its REF_SOURCE record counts the users;
// - a quad's bias ("Q0_BIAS") holds one value while cores claim it.
// Placing something either takes all of it or nothing and reports the first
// Conflict; a holder only ever releases what it took, and a PLL, reference
// clock or bias is freed when its last user leaves.
//
// Call log: every call of an operation cores make (the first group below)
// appends one entry "name(arg1, arg2, ...)": texts as they are, lists as
// "[a, b]", numbers in the general format with up to 15 significant digits
// ("9.8304"), booleans as "true"/"false", QVariants as their text, and the
// list of setGlobalResetEnableParam as it was passed in. Examples:
//   checkAccess(q0_refclk0, Q0_LANE0_RX)
//   checkRoute([Q0_LANE0], [Q0_QPLL0], [Q0_REFCLK0], [122.88])
//   resetLane(Q0_LANE0, false)     notOccupiedLanes()     setData(Q0_BIAS, 7)
//
// setGlobalResetEnableParam only ever appends lines to the list it is
// given; it never rewrites or removes an earlier line. For every quad that
// the list enables (a line "q<n>_enable true") it appends one line
// "q<n>_global_reset_en true"; every line it adds has a setting name ending
// in "_global_reset_en".
class IPHOST_EXPORT serdes
{
public:
    static serdes *instance();

    // ---- operations the cores call ----
    QStringList notOccupiedLanes() const;
    // The quad's QPLLs ("QPLL0", "QPLL1") already running at a VCO that gives the rate.
    QStringList checkPLLforQuad0(double lineRateGbps) const;
    QStringList checkPLLforQuad1(double lineRateGbps) const;
    bool checkPllEnable(const QString &pllKey) const;
    double getFreqByRefsrc(const QString &refDisplayName) const;
    bool checkAccess(const QString &refSerdesName, const QString &laneAccessName) const;
    // The record is brought up to date on every look-up.
    REF_SOURCE *FormStringToREFSPtr(const QString &refSerdesName);
    // Registers a pending route (the lists are parallel: lane keys, PLL keys,
    // reference routing names, frequencies in MHz). A refused route registers nothing.
    bool checkRoute(const QStringList &laneKeys, const QStringList &pllKeys,
                    const QStringList &refRoutingNames, const QStringList &refFrequencies);
    // Releases the pending route on the lane, and nothing else: a core's lane
    // stays until release(). The flag changes nothing here.
    void resetLane(const QString &laneKey, bool flag);
    // Stores a shared value; the project's shared values become one of its holders.
    void setData(const QString &key, QVariant value);
    QVariant getData(const QString &key) const;
    QMap<QString, QVariant> globalData() const;
    // The project's working directory; the process's current directory until one is set.
    QString workingDir() const;
    void setGlobalResetEnableParam(QStringList &settings);

    // ---- the project model ----
    // Places a whole core, named by its instance name: for each entry of its
    // lane list the lane, the PLL at the VCO its line rate needs and the
    // reference clock at its frequency. All or nothing.
    bool occupy(const Message &core, Conflict *conflict = nullptr);
    // The core leaves the project; false when it held nothing.
    bool release(const QString &instanceName);
    // A core's claim of a quad's shared bias (0 to 15). The first claim fixes
    // the value; another value is refused while others hold the first.
    bool claimQuadBias(const QString &registryKey, int value, const QString &holder,
                       Conflict *conflict = nullptr);
    // Why a value cannot be a quad's shared bias ("Q0_BIAS takes 0 to 15, not
    // 99", "\"X\" is no quad bias"); empty when it can.
    static QString quadBiasProblem(const QString &registryKey, int value);
    // Holders of a lane key, PLL key, reference routing name or shared key,
    // one entry per use, in the order they came.
    QStringList users(const QString &resource) const;

    // Forgets everything: no device, no holders, no shared values, no log.
    void reset();
    void setDevice(const DEV::DeviceArg &device);
    DEV::DeviceArg device() const;
    void setWorkingDir(const QString &dir);
    // The project's own set-up (holder ""), false on a conflict.
    bool occupyLane(const QString &laneDisplayName);
    bool enablePll(const QString &pllKey, double lineRateGbps);
    bool fixReference(const QString &refDisplayName, double frequencyMHz, int users = 1);

    QStringList occupiedLanes() const; // lane keys held by cores, sorted
    QStringList pendingRoutes() const; // lane keys of routes not yet reset, sorted

    QStringList callLog() const;
    void clearCallLog();

private:
    serdes();
    serdes(const serdes &) = delete;
    serdes &operator=(const serdes &) = delete;

    // What one holder takes on one lane.
    struct Holding
    {
        QString holder;
        QString laneKey;                         // empty: no lane
        QString pllKey;                          // empty: no PLL
        double vcoGHz = 0.0;                     // 0.0 while the line rate is unknown
        const Internal::RefClock *ref = nullptr; // null: no reference clock
        double refMHz = 0.0;
        bool pending = false; // a route waiting for resetLane
    };

    template<typename... Args>
    void logCall(const char *name, const Args &...args) const;
    QStringList deviceLaneKeys() const;
    QStringList runningQpllsOfQuad(int quad, double lineRateGbps) const;
    QStringList lanesWhere(bool pending) const;
    bool placeEntry(const QString &holder, const QString &laneKey, const QString &pllKey,
                    const QString &refRoutingName, const QString &refMHz,
                    std::optional<double> lineRateGbps, Conflict *conflict);
    bool place(Holding holding, std::optional<double> lineRateGbps, Conflict *conflict);
    bool checkLane(const Holding &holding, Conflict *conflict) const;
    bool checkReference(const Holding &holding, Conflict *conflict) const;
    bool checkPll(Holding &holding, std::optional<double> lineRateGbps, Conflict *conflict) const;

    DEV::DeviceArg m_device;
    QString m_workingDir;
    QMap<QString, QVariant> m_shared;
    QMap<QString, QStringList> m_sharedHolders; // key -> holders, "" for the project
    QVector<Holding> m_holdings;
    std::map<QString, REF_SOURCE> m_references; // by SERDES name; addresses stay valid
    mutable QStringList m_callLog;
};

} // namespace IPSERDESIP
