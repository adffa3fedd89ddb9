#pragma once

// Shared set-up of the dialog tests: a project on one device of the
// reference host, dialogs made the way the host makes them, a user who
// clicks, types and answers message boxes, and a look at private state.

// The tables spell their texts as plain ASCII literals.
#undef QT_NO_CAST_FROM_ASCII

#include <dialog/cpridlg.h>
#include <modaldriver.h>

#include <core/idecore.h>
#include <dev/devicedb.h>
#include <ipcore/ipcorefunctions.h>
#include <ipserdes/serdes.h>

#include <QAbstractButton>
#include <QComboBox>
#include <QDir>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using Record = QMap<QString, QVariant>;

namespace IPCPRI {

// Reads the dialog's private state where no widget shows it.
class CpriDialogProbe
{
public:
    explicit CpriDialogProbe(cpridlg *dialog) : d(dialog) {}
    int biasFlag() const { return d->biasFlag; }
    QStringList freeLanes() const { return d->freeLanes; }
    int freeLaneCount() const { return d->freeLaneCount; }
    QStringList settings() const { return d->serdesSettings; }
    QList<QStringList> routes() const
    {
        return {d->routeLanes, d->routePlls, d->routeRefClocks, d->routeRefFreqs};
    }
    const void *generator() const { return d->serdesGenerator; }

private:
    cpridlg *d;
};

} // namespace IPCPRI

using IPCPRI::cpridlg;
using Probe = IPCPRI::CpriDialogProbe;

inline IPSERDESIP::serdes *registry() { return IPSERDESIP::serdes::instance(); }

// "key=value;key=value" as a record of texts (loading converts them).
inline Record parse(const QString &pairs)
{
    Record r;
    for (const QString &pair : pairs.split(QLatin1Char(';'), Qt::SkipEmptyParts))
        r.insert(pair.section(QLatin1Char('='), 0, 0), pair.section(QLatin1Char('='), 1));
    return r;
}

// A project on one device, in a scratch working directory.
struct Project
{
    explicit Project(const QString &deviceId = QStringLiteral("DVA-1-C2I1"),
                     const QString &setup = QString())
        : device(Core::IdeCore::deviceDataBase()->findDevice(deviceId))
    {
        registry()->reset();
        registry()->setDevice(device);
        registry()->setWorkingDir(work.path());
        for (const QString &step : setup.split(QLatin1Char(';'), Qt::SkipEmptyParts))
            prepare(step.split(QLatin1Char(':')));
    }

    // What other cores and the file system hold before the dialog opens:
    // "pll:<key>:<Gbps>", "ref:<source>:<MHz>:<users>", "data:<key>:<int>",
    // "full" (every lane taken), "folder" (the core's folder exists),
    // "nodir" (the working directory is a plain file).
    void prepare(const QStringList &s)
    {
        if (s[0] == QLatin1String("pll"))
            QVERIFY(registry()->enablePll(s[1], s[2].toDouble()));
        else if (s[0] == QLatin1String("ref"))
            QVERIFY(registry()->fixReference(s[1], s[2].toDouble(), s[3].toInt()));
        else if (s[0] == QLatin1String("data"))
            registry()->setData(s[1], s[2].toInt());
        else if (s[0] == QLatin1String("full"))
            for (const QString &lane : registry()->notOccupiedLanes())
                registry()->occupyLane(lane);
        else if (s[0] == QLatin1String("folder"))
            QDir(work.path()).mkpath(QStringLiteral("cpri_0"));
        else if (s[0] == QLatin1String("nodir"))
            registry()->setWorkingDir(QCoreApplication::applicationFilePath());
    }

    std::unique_ptr<cpridlg> create(const Record &info = descriptor())
    {
        auto dialog = std::make_unique<cpridlg>(info, &record, nullptr);
        dialog->setCreating(QStringLiteral("cpri_0"), device);
        return dialog;
    }

    std::unique_ptr<cpridlg> open(const Record &saved, bool *opened = nullptr)
    {
        auto dialog = std::make_unique<cpridlg>(descriptor(), &record, nullptr);
        const bool ok = dialog->setOpening(saved);
        if (opened)
            *opened = ok;
        return dialog;
    }

    static Record descriptor()
    {
        return IPCore::processIPInfoSpec(QStringLiteral(CPRI_PACKAGE_DIR "/cpri.ipspec"));
    }

    QTemporaryDir work;
    DEV::DeviceArg device;
    Record record;
};

// A widget by object name; "parent/name" looks inside the named parent.
template<typename T = QWidget>
T *w(QObject *d, const QString &path)
{
    QObject *scope = d;
    if (path.contains(QLatin1Char('/')))
        scope = d->findChild<QObject *>(path.section(QLatin1Char('/'), 0, 0));
    T *found = scope ? scope->findChild<T *>(path.section(QLatin1Char('/'), -1)) : nullptr;
    if (!found)
        qFatal("no widget %s", qPrintable(path));
    return found;
}

// Acts as a user, one ';'-separated step at a time: "name" clicks a
// button, "name=value" picks a combo-box item, sets a spin box or retypes
// a line edit and leaves it; "slot()" is reachable by name only. A
// disabled widget takes nothing from the user.
inline void act(QObject *d, const QString &steps)
{
    for (const QString &step : steps.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        const QString name = step.section(QLatin1Char('='), 0, 0);
        const QString value = step.section(QLatin1Char('='), 1);
        if (name.endsWith(QLatin1String("()"))) {
            QVERIFY(QMetaObject::invokeMethod(d, qPrintable(name.chopped(2))));
        } else if (!w(d, name)->isEnabled()) {
            continue;
        } else if (auto *button = qobject_cast<QAbstractButton *>(w(d, name))) {
            button->click();
        } else if (auto *combo = qobject_cast<QComboBox *>(w(d, name))) {
            combo->setCurrentIndex(combo->findText(value));
        } else if (auto *spin = qobject_cast<QSpinBox *>(w(d, name))) {
            spin->setValue(value.toInt());
        } else if (auto *edit = qobject_cast<QLineEdit *>(w(d, name))) {
            edit->clear();
            QTest::keyClicks(edit, value);
            emit edit->editingFinished();
        }
    }
}

// What a user sees of a widget: its text, items or value, then "-" when
// disabled, "*" when checked and "^" when hidden.
inline QString look(QWidget *x)
{
    QString s;
    if (auto *b = qobject_cast<QAbstractButton *>(x))
        s = b->text() + QLatin1String(b->isChecked() ? "*" : "");
    else if (auto *e = qobject_cast<QLineEdit *>(x))
        s = e->displayText();
    else if (auto *l = qobject_cast<QLabel *>(x))
        s = l->text();
    else if (auto *g = qobject_cast<QGroupBox *>(x))
        s = g->title();
    else if (auto *c = qobject_cast<QComboBox *>(x)) {
        QStringList items;
        for (int i = 0; i < c->count(); ++i)
            items << c->itemText(i);
        s = items.join(QLatin1Char('|')) + QLatin1Char('@') + c->currentText();
    } else if (auto *n = qobject_cast<QSpinBox *>(x))
        s = QStringLiteral("%1..%2=%3").arg(n->minimum()).arg(n->maximum()).arg(n->value());
    return s + QLatin1String(x->isEnabled() ? "" : "-") + QLatin1String(x->isHidden() ? "^" : "");
}

// Answers every modal message box with one button and notes "title: text".
struct Boxes
{
    explicit Boxes(QMessageBox::StandardButton answer = QMessageBox::Yes)
    {
        driver.setAnswer(answer);
        driver.start();
    }
    QStringList seen() const
    {
        QStringList list;
        for (const CpriHost::ModalDriver::SeenBox &b : driver.seenBoxes())
            list << b.title + QStringLiteral(": ") + b.text;
        return list;
    }
    CpriHost::ModalDriver driver;
};

// The texts the dialog shows, as its users read them.
namespace Msg {
inline const QString RefClock = QStringLiteral(
    "Failure: The Expected Reference Clock Pin can not be connected to the Expected PLL");
inline const QString LineRate = QStringLiteral(
    "Failure: The Expected Line Rate can not be generated by the Reference Clock Frequency");
inline const QString C0 = QStringLiteral("Warning: C0 must be greater than 20.");
inline const QString Succeed = QStringLiteral("Succeed: Succeed");
inline QString bias(const QString &lanes, int value)
{
    return QStringLiteral("Question: %1 BIAS will also be changed to %2, whether to accept or not? ")
        .arg(lanes).arg(value);
}
} // namespace Msg
