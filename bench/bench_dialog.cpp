// The configuration dialog's own cost, each against a floor measured in
// the same process, interleaved round by round:
//
// 1. Opening a warm dialog until it is shown, against the same host frame
//    holding the same four forms without the core's initialisation, and
//    against the bare forms in a tab widget, both at the dialog's size.
// 2. A click that changes the port figure (the "DRP Ports" box), against a
//    click on a box that runs no code of the dialog ("Fixed Config Enable").
//
//   bench_dialog [rounds]   (default 200; runs on the offscreen platform)

#include "benchstats.h"

#include <dialog/cpridlg.h>
#include <dialog/portfigure.h>
#include <dialog/forms/tabforms.h>

#include <core/idecore.h>
#include <dev/devicedb.h>
#include <ipcore/ipcorefunctions.h>
#include <ipserdes/serdes.h>

#include <QApplication>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QVBoxLayout>

#include <cstdlib>
#include <memory>

namespace {

const QString InstanceName = QStringLiteral("cpri_0");
const QString Device = QStringLiteral("DVA-1-C2I1");

struct Project
{
    QMap<QString, QVariant> info;
    QMap<QString, QVariant> record;
    DEV::DeviceArg device;
    QSize dialogSize;
};

// The forms on four pages, in the dialog's order and with its titles.
template<class AddTab>
void addForms(QWidget *parent, AddTab addTab)
{
    IPCPRI::core_config core;
    IPCPRI::phy_config phy;
    IPCPRI::afe_config afe;
    IPCPRI::opt_config opt;
    QWidget *pages[] = {new QWidget(parent), new QWidget(parent), new QWidget(parent),
                        new QWidget(parent)};
    core.setupUi(pages[0]);
    phy.setupUi(pages[1]);
    afe.setupUi(pages[2]);
    opt.setupUi(pages[3]);
    addTab(pages[0], QStringLiteral("CPRI Core Configuration"));
    addTab(pages[1], QStringLiteral("PHY Configuration"));
    addTab(pages[2], QStringLiteral("AFE Configuration"));
    addTab(pages[3], QStringLiteral("Optional Ports Configuration"));
}

void showNow(QWidget *w)
{
    w->show();
    QApplication::processEvents();
}

std::unique_ptr<QWidget> openDialog(Project &p)
{
    auto d = std::make_unique<IPCPRI::cpridlg>(p.info, &p.record, nullptr);
    d->setCreating(InstanceName, p.device);
    showNow(d.get());
    return d;
}

std::unique_ptr<QWidget> openFrame(Project &p)
{
    auto d = std::make_unique<IPSERDESIP::protocolGenDlg>(nullptr);
    d->uiSetLabelText(p.info.value(QStringLiteral("ipcore.label")).toString());
    d->uiSetDefaultFileName(p.info.value(QStringLiteral("ipcore.target")).toString());
    d->uiSetModuleName(p.info.value(QStringLiteral("ipcore.module")).toString());
    addForms(d.get(), [&d](QWidget *page, const QString &title) { d->uiAddTab(page, title); });
    d->setCreating(InstanceName, p.device);
    d->resize(p.dialogSize);
    showNow(d.get());
    return d;
}

std::unique_ptr<QWidget> openBareForms(Project &p)
{
    auto w = std::make_unique<QWidget>();
    auto *tabs = new QTabWidget(w.get());
    (new QVBoxLayout(w.get()))->addWidget(tabs);
    addForms(tabs, [tabs](QWidget *page, const QString &title) { tabs->addTab(page, title); });
    w->resize(p.dialogSize);
    showNow(w.get());
    return w;
}

double timeOpen(std::unique_ptr<QWidget> (*open)(Project &), Project &p)
{
    QElapsedTimer timer;
    timer.start();
    std::unique_ptr<QWidget> w = open(p);
    const double us = timer.nsecsElapsed() / 1000.0;
    w.reset();
    QApplication::processEvents();
    return us;
}

double timeClick(QCheckBox *box)
{
    QElapsedTimer timer;
    timer.start();
    box->click();
    const double us = timer.nsecsElapsed() / 1000.0;
    QApplication::processEvents(); // paints outside the measurement
    return us;
}

QtMessageHandler defaultHandler = nullptr;

// The offscreen platform notes every shown window; that is no finding.
void quietHandler(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (!message.contains(QLatin1String("propagateSizeHints")))
        defaultHandler(type, context, message);
}

} // namespace

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    defaultHandler = qInstallMessageHandler(quietHandler);
    const int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 200;

    QTemporaryDir work;
    Project p;
    p.device = Core::IdeCore::deviceDataBase()->findDevice(Device);
    IPSERDESIP::serdes::instance()->setDevice(p.device);
    IPSERDESIP::serdes::instance()->setWorkingDir(work.path());
    p.info = IPCore::processIPInfoSpec(QStringLiteral(CPRI_PACKAGE_DIR "/cpri.ipspec"));
    if (p.info.isEmpty()) {
        std::fprintf(stderr, "cannot read the package in %s\n", CPRI_PACKAGE_DIR);
        return 1;
    }
    p.dialogSize = openDialog(p)->size();

    // Warm-up: fonts, styles and caches of all three.
    for (int i = 0; i < 5; ++i) {
        timeOpen(openDialog, p);
        timeOpen(openFrame, p);
        timeOpen(openBareForms, p);
    }
    QVector<double> dialog, frame, bare;
    for (int i = 0; i < rounds; ++i) {
        dialog << timeOpen(openDialog, p);
        frame << timeOpen(openFrame, p);
        bare << timeOpen(openBareForms, p);
    }
    const Bench::Figures fd = Bench::figures(dialog), ff = Bench::figures(frame),
                         fb = Bench::figures(bare);
    std::printf("Opening a warm dialog until shown (%d rounds, %dx%d):\n", rounds,
                p.dialogSize.width(), p.dialogSize.height());
    Bench::printRow("core dialog", fd, "us");
    Bench::printRow("frame with the forms, no init", ff, "us");
    Bench::printRow("bare forms, same size", fb, "us");
    Bench::printRatio("dialog / frame", fd, ff, "at most 1.1x");
    Bench::printRatio("dialog / bare forms", fd, fb, "at most 1.3x");

    std::unique_ptr<QWidget> d = openDialog(p);
    auto *figureBox = d->findChild<QCheckBox *>(QStringLiteral("checkBoxDRPPort"));
    auto *plainBox = d->findChild<QCheckBox *>(QStringLiteral("FixedConfigEnable"));
    const int clicks = rounds * 20;
    for (int i = 0; i < 50; ++i) {
        timeClick(figureBox);
        timeClick(plainBox);
    }
    QVector<double> figureClicks, plainClicks;
    for (int i = 0; i < clicks; ++i) {
        figureClicks << timeClick(figureBox);
        plainClicks << timeClick(plainBox);
    }
    const Bench::Figures fc = Bench::figures(figureClicks), pc = Bench::figures(plainClicks);
    std::printf("\nA click on a check box (%d clicks each):\n", clicks);
    Bench::printRow("\"DRP Ports\" (changes the figure)", fc, "us");
    Bench::printRow("\"Fixed Config Enable\" (floor)", pc, "us");
    std::printf("  dialog's own code per figure click: median %.1f us, min-to-min %.1f us "
                "(goal: under 20 us)\n",
                fc.median - pc.median, fc.min - pc.min);

    // Where a figure click goes: the dialog's port list, and the frame
    // drawing it. Both alternate between two figures, as the clicks do.
    IPCPRI::FigureChoices without;
    without.mii = true;
    IPCPRI::FigureChoices with = without;
    with.drpPorts = true;
    const QList<Utils::PinFigure> figures[] = {IPCPRI::portFigure(without),
                                               IPCPRI::portFigure(with)};
    auto *host = static_cast<IPSERDESIP::protocolGenDlg *>(d.get());
    QVector<double> lists, draws;
    QElapsedTimer timer;
    for (int i = 0; i < clicks; ++i) {
        timer.start();
        const QList<Utils::PinFigure> list = IPCPRI::portFigure(i % 2 ? with : without);
        lists << timer.nsecsElapsed() / 1000.0;
        timer.start();
        host->uiSetFigurePins(figures[i % 2]);
        draws << timer.nsecsElapsed() / 1000.0;
        QApplication::processEvents();
    }
    Bench::printRow("of which the port list", Bench::figures(lists), "us");
    Bench::printRow("of which the frame's figure", Bench::figures(draws), "us");
    return 0;
}
