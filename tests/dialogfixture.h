#pragma once

// Shared set-up of the dialog tests: a project with a device, a dialog
// made the way the protocol object makes it, and a look at its state.

#include <config/configkeys.h>
#include <dialog/cpridlg.h>
#include <modaldriver.h>

#include <core/idecore.h>
#include <dev/devicedb.h>
#include <ipcore/ipcorefunctions.h>
#include <ipserdes/serdes.h>

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>
#include <QTemporaryDir>

#include <memory>

namespace IPCPRI {

// Reads and drives the dialog's private state, as the tests need.
class CpriDialogProbe
{
public:
    explicit CpriDialogProbe(cpridlg *dialog) : d(dialog) {}

    int biasFlag() const { return d->biasFlag; }
    void setBiasFlag(int flag) { d->biasFlag = flag; }
    int freeLaneCount() const { return d->freeLaneCount; }
    QStringList freeLanes() const { return d->freeLanes; }
    QStringList settings() const { return d->serdesSettings; }
    QStringList routeLanes() const { return d->routeLanes; }
    QStringList routePlls() const { return d->routePlls; }
    QString speedBits() const { return d->speedEnableBits; }
    bool hasGenerator() const { return d->serdesGenerator != nullptr; }
    const void *generator() const { return d->serdesGenerator; }
    QMap<QString, QVariant> quadBias() const { return d->quadBias; }
    bool collect() { return d->collectConfiguration(); }
    bool calculate(bool prompt) { return d->onButtonCalculateClicked(prompt); }
    int checkSpeed() { return d->checkSpeedEnable(); }
    void refreshLanes() { d->updateLaneConect(); }

private:
    cpridlg *d;
};

} // namespace IPCPRI

// A project on one device of the reference host, in a scratch working directory.
struct Project
{
    explicit Project(const QString &deviceId = QStringLiteral("DVA-1-C2I1"))
    {
        IPSERDESIP::serdes::instance()->reset();
        device = Core::IdeCore::deviceDataBase()->findDevice(deviceId);
        IPSERDESIP::serdes::instance()->setDevice(device);
        IPSERDESIP::serdes::instance()->setWorkingDir(work.path());
    }

    // A dialog for a new core, prepared for the device.
    std::unique_ptr<IPCPRI::cpridlg> newDialog(const QMap<QString, QVariant> &info = descriptor())
    {
        auto dialog = std::make_unique<IPCPRI::cpridlg>(info, &record, nullptr);
        dialog->setCreating(QStringLiteral("cpri_0"), device);
        return dialog;
    }

    static QMap<QString, QVariant> descriptor()
    {
        QMap<QString, QVariant> info =
            IPCore::processIPInfoSpec(QStringLiteral(CPRI_PACKAGE_DIR "/cpri.ipspec"));
        info.insert(QStringLiteral("ipcore.dir.data"), QStringLiteral(CPRI_PACKAGE_DIR "/data"));
        return info;
    }

    QTemporaryDir work;
    DEV::DeviceArg device;
    IPCPRI::ConfigMap record;
};

template<typename T>
T *widget(QObject *dialog, const char *name)
{
    T *found = dialog->findChild<T *>(QString::fromLatin1(name));
    if (!found)
        qFatal("no widget %s", name);
    return found;
}

inline QCheckBox *box(QObject *d, const char *name) { return widget<QCheckBox>(d, name); }
inline QComboBox *combo(QObject *d, const char *name) { return widget<QComboBox>(d, name); }
inline QLineEdit *edit(QObject *d, const char *name) { return widget<QLineEdit>(d, name); }
inline QSpinBox *spin(QObject *d, const char *name) { return widget<QSpinBox>(d, name); }

inline QStringList items(QComboBox *c)
{
    QStringList list;
    for (int i = 0; i < c->count(); ++i)
        list << c->itemText(i);
    return list;
}

inline QStringList titles(const QList<CpriHost::ModalDriver::SeenBox> &boxes)
{
    QStringList list;
    for (const CpriHost::ModalDriver::SeenBox &b : boxes)
        list << b.title + QStringLiteral(": ") + b.text;
    return list;
}
