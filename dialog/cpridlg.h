#pragma once

#include "../config/configkeys.h"

#include <ipserdes/protocolgendlg.h>

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

namespace IPSERDESIP { class generator; }

namespace IPCPRI {

class core_config;
class phy_config;
class afe_config;
class opt_config;

// The CPRI core's configuration dialog: four tabs on the host's dialog
// frame. It writes the collected configuration into the protocol
// object's record, which it does not own.
class cpridlg : public IPSERDESIP::protocolGenDlg
{
    Q_OBJECT
public:
    cpridlg(const QMap<QString, QVariant> &ipInfo, QMap<QString, QVariant> *resultConfig,
            QWidget *parent);
    ~cpridlg() override;

    void initDialog() override;
    bool loadConfiguration(const QMap<QString, QVariant> &config) override;

public slots:
    void accept() override;

private slots:
    void refreshFigure();
    void updatedRefClkFreq();
    void updatePLLSel();
    void updateLaneConect();
    int checkSpeedEnable();
    void updateRealTimeVendor();
    void updateEncodingAndDecoding();
    void checkClkPeriod();
    void checkRefClkFreq();
    bool onButtonCalculateClicked(bool prompt = true);
    void checkLineEditInPut();
    void updatedSpeedEnable();
    bool calculateFFE_C0();
    void onFFEModeChanged();
    void onEqualizationModeChanged();
    void resetFlagforBias();
    void updateBiasDefaultValue();

private:
    friend class CpriDialogProbe; // lets tests look at the dialog's state

    void connectSignals();
    void applyConfiguration(const QMap<QString, QVariant> &config);
    bool collectConfiguration();
    void appendLaneSettings(QStringList &settings, const QString &lanePrefix,
                            const QString &quadPrefix);
    void promptQuadBias();
    bool checkRefClockAccess();
    void showErrorBox(const QString &text);

    core_config *coreUi;
    phy_config *phyUi;
    afe_config *afeUi;
    opt_config *optUi;
    QMap<QString, QVariant> ipInfo;
    QMap<QString, QVariant> *resultConfig;
    IPSERDESIP::generator *serdesGenerator;
    QStringList serdesSettings;
    QStringList freeLanes;
    int biasFlag;
    QMap<QString, QVariant> quadBias;
    QList<double> lineRateList;
    QString speedEnableBits;
    int freeLaneCount;
    QStringList routePlls;
    QStringList routeLanes;
    QStringList routeRefClocks;
    QStringList routeRefFreqs;
};

} // namespace IPCPRI
