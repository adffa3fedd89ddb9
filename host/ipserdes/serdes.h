#pragma once

#include "../hostglobal.h"
#include "../dev/devicearg.h"
#include "refsource.h"

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <map>

namespace IPSERDESIP {

class Message;

// The project's transceiver resource registry: which lanes other cores
// hold, which shared PLLs are set up and for what, which reference clocks
// carry which frequency, and the values shared by all cores of a quad
// (for example "Q0_BIAS"). One object per process, reached through
// instance(); it is called from the GUI thread only and takes no locks.
//
// Names the registry uses:
//   lane display name "Q0 Lane0", lane key "Q0_LANE0",
//   lane access name "Q0_LANE0_RX" / "Q0_LANE0_TX",
//   PLL keys "Q0_QPLL0", "Q0_QPLL1", "Q0_CPLL0" ... "Q1_CPLL3",
//   reference clocks by routing name (FromRefOptionToRef) and by SERDES
//   name (refsrcOptTransforSerdesName).
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
    QStringList checkPLLforQuad0(double lineRateGbps) const;
    QStringList checkPLLforQuad1(double lineRateGbps) const;
    bool checkPllEnable(const QString &pllKey) const;
    double getFreqByRefsrc(const QString &refDisplayName) const;
    bool checkAccess(const QString &refSerdesName, const QString &laneAccessName) const;
    REF_SOURCE *FormStringToREFSPtr(const QString &refSerdesName);
    bool checkRoute(const QStringList &laneKeys, const QStringList &pllKeys,
                    const QStringList &refRoutingNames, const QStringList &refFrequencies);
    // Releases what a route or a core holds on the lane. With keepClocking
    // the PLL and reference-clock set-ups stay; without it they go too.
    void resetLane(const QString &laneKey, bool keepClocking);
    void setData(const QString &key, QVariant value);
    QVariant getData(const QString &key) const;
    QMap<QString, QVariant> globalData() const;
    QString workingDir() const;
    void setGlobalResetEnableParam(QStringList &settings);

    // ---- the reference host's own model of the project ----
    // Forgets everything: no device, no cores, no shared values.
    void reset();
    void setDevice(const DEV::DeviceArg &device);
    DEV::DeviceArg device() const;
    void setWorkingDir(const QString &dir);

    // Records the resources another core of the project holds, as that
    // core's resource record names them. False when the record names a lane
    // that is unknown or already held.
    bool occupy(const Message &resources);
    // Shortcuts for setting up a project by hand.
    bool occupyLane(const QString &laneDisplayName);
    bool enablePll(const QString &pllKey, double lineRateGbps);
    bool fixReference(const QString &refDisplayName, double frequencyMHz, int users = 1);

    QStringList occupiedLanes() const;   // lane keys, sorted
    QStringList pendingRoutes() const;   // lane keys of routes not yet reset

private:
    serdes();
    serdes(const serdes &) = delete;
    serdes &operator=(const serdes &) = delete;

    // What one lane holds: a core's lane, or a route a core is trying out.
    struct Route
    {
        QString pllKey;
        QString refSerdesName;
        bool ownsPll = false; // the route set the PLL up, and releasing it frees the PLL
        bool pending = false; // registered by checkRoute, waiting for resetLane
    };

    QStringList deviceLanes() const;
    QStringList producibleQpllsOfQuad(int quad, double lineRateGbps) const;
    void releaseReference(const QString &refSerdesName);

    DEV::DeviceArg m_device;
    QString m_workingDir;
    QMap<QString, QVariant> m_shared;
    QMap<QString, double> m_pllRates;           // enabled QPLL key -> VCO in GHz
    std::map<QString, REF_SOURCE> m_references; // by SERDES name; addresses stay valid
    QMap<QString, Route> m_routes;              // lane key -> what holds the lane
};

} // namespace IPSERDESIP
