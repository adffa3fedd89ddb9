#pragma once

#include "../config/configkeys.h"

#include <ipserdes/protocolgendlg.h>

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

QT_BEGIN_NAMESPACE
class QAbstractButton;
class QCheckBox;
QT_END_NAMESPACE

namespace IPSERDESIP {
class generator;
}

namespace IPCPRI {

class core_config;
class phy_config;
class afe_config;
class opt_config;

// The CPRI core's configuration dialog: four tabs on the host's dialog
// frame. It writes the collected configuration into the protocol
// object's record, which it does not own.
//
// Its implementation is split by concern: set-up and wiring (cpridlg.cpp),
// the rules that run while the user edits (cpridlgrules.cpp), collecting,
// calculating and accepting (cpridlgaccept.cpp) and loading a stored
// record (cpridlgload.cpp).
class cpridlg : public IPSERDESIP::protocolGenDlg
{
    Q_OBJECT
public:
    cpridlg(const QMap<QString, QVariant> &ipInfo, QMap<QString, QVariant> *resultConfig,
            QWidget *parent);
    ~cpridlg() override;

    void initDialog() override;
    bool loadConfiguration(const QMap<QString, QVariant> &config) override;

    // The decision about the quad's shared bias, as biasFlag holds it.
    enum BiasDecision {
        BiasUndecided = 0,
        BiasForWholeQuad = 1, // the bias chosen here applies to every core of the quad
        BiasDeclined = 2,
    };

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

    // A widget that holds one key of the record, one to one.
    struct FieldBinding;

    void connectSignals();
    void applyConfiguration(const QMap<QString, QVariant> &config);
    bool collectConfiguration();
    void appendLaneSettings(QStringList &settings, const QString &lanePrefix,
                            const QString &quadPrefix);
    void promptQuadBias();
    bool checkRefClockAccess();
    void showErrorBox(const QString &text);

    QVector<FieldBinding> fieldBindings() const;
    // The rate boxes by rate row (null for the reserved rows), and the
    // speed class boxes in the order of the class table.
    QVector<QCheckBox *> rateBoxes() const;
    QVector<QCheckBox *> speedClassBoxes() const;

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
