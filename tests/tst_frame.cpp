// The host's dialog frame and its port figure: every tab fits the default
// size, a folder is asked about only when it was there before the dialog,
// the instance name proposes the file name, and how the figure lays out.

#include "dialogfixture.h"

#include <ipserdes/pinfigureview.h>
#include <plugin/cpri.h>

#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSplitter>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <QToolButton>

using IPSERDESIP::PinFigureView;

namespace {

bool isControl(const QWidget *w)
{
    return qobject_cast<const QLabel *>(w) || qobject_cast<const QComboBox *>(w)
           || qobject_cast<const QLineEdit *>(w) || qobject_cast<const QSpinBox *>(w)
           || qobject_cast<const QCheckBox *>(w) || qobject_cast<const QRadioButton *>(w)
           || qobject_cast<const QPushButton *>(w);
}

// What the shown page cuts: visible controls given less room than they ask
// for (Qt's own parts of a control aside) and scroll areas that scroll.
QStringList cutOn(QWidget *page)
{
    QStringList cut;
    for (QWidget *w : page->findChildren<QWidget *>()) {
        const QSize room = w->size(), wanted = w->sizeHint();
        if (isControl(w) && w->isVisible() && !w->objectName().startsWith(QLatin1String("qt_"))
            && (room.width() < wanted.width() || room.height() < wanted.height()))
            cut << w->objectName();
    }
    for (QScrollArea *area : page->findChildren<QScrollArea *>()) {
        if (area->horizontalScrollBar()->isVisible() || area->verticalScrollBar()->isVisible())
            cut << area->objectName();
    }
    return cut;
}

Utils::PinFigure pin(const QString &name)
{
    const bool output = name.contains(QLatin1String("_o"));
    return Utils::PinFigure(name, output ? 1 : 0, name.contains(QLatin1Char('[')),
                            output ? Qt::AlignRight : Qt::AlignLeft);
}

QStringList texts(std::initializer_list<const char *> names)
{
    QStringList list;
    for (const char *name : names)
        list << QString::fromLatin1(name);
    return list;
}

QList<Utils::PinFigure> pins(const QStringList &names)
{
    QList<Utils::PinFigure> list;
    for (const QString &name : names)
        list << pin(name);
    return list;
}

int advance(const QWidget &w, const QString &text)
{
    return w.fontMetrics().horizontalAdvance(text);
}

} // namespace

class TestFrame : public QObject
{
    Q_OBJECT

private slots:
    void tabsFitTheDefaultSize_data();
    void tabsFitTheDefaultSize();
    void onlyAFolderFromBeforeIsAskedAbout_data();
    void onlyAFolderFromBeforeIsAskedAbout();
    void instanceNameIsTheProposedFileName_data();
    void instanceNameIsTheProposedFileName();
    void figureSortsPortsToTheirSides();
    void figureTitleFollowsTheModuleName();
    void figureSizeFollowsNamesRowsAndFont();
};

void TestFrame::tabsFitTheDefaultSize_data()
{
    QTest::addColumn<QString>("device");
    for (const char *device : {"DVA-1-C2I1", "DVB-1-C2I1", "DVC-1-C2I1"})
        QTest::newRow(device) << QString::fromLatin1(device);
}

void TestFrame::tabsFitTheDefaultSize()
{
    QFETCH(QString, device);
    Project project(device);
    auto d = project.newDialog();
    d->show();
    QVERIFY(QTest::qWaitForWindowExposed(d.get()));
    auto *tabs = d->findChild<QTabWidget *>();
    const auto checkEveryTab = [&] {
        for (QToolButton *arrow : tabs->tabBar()->findChildren<QToolButton *>())
            QVERIFY(!arrow->isVisible());
        for (int i = 0; i < tabs->count(); ++i) {
            tabs->setCurrentIndex(i);
            QCoreApplication::processEvents();
            QVERIFY2(cutOn(tabs->currentWidget()).isEmpty(),
                     qPrintable(tabs->tabText(i) + QLatin1String(": ")
                                + cutOn(tabs->currentWidget()).join(QLatin1Char(' '))));
        }
    };
    checkEveryTab();
    QVERIFY(!widget<QScrollArea>(d.get(), "figureArea")->horizontalScrollBar()->isVisible());

    // A larger figure takes no room from the tabs.
    const QSize area = tabs->size();
    for (const char *name : {"speedSel1216512", "speedEnable1216512", "RealTimeVendor", "GMII",
                             "checkBoxDRPPort", "checkBoxLoopBackPorts"})
        widget<QAbstractButton>(d.get(), name)->click();
    QCoreApplication::processEvents();
    QVERIFY(d->figurePins().size() > 100);
    QCOMPARE(tabs->size(), area);
    checkEveryTab();
}

void TestFrame::onlyAFolderFromBeforeIsAskedAbout_data()
{
    QTest::addColumn<bool>("existed");
    QTest::addColumn<int>("answer");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("made by the calculation") << false << int(QMessageBox::No) << true;
    QTest::newRow("there before, kept") << true << int(QMessageBox::No) << false;
    QTest::newRow("there before, reused") << true << int(QMessageBox::Yes) << true;
}

void TestFrame::onlyAFolderFromBeforeIsAskedAbout()
{
    QFETCH(bool, existed);
    QFETCH(int, answer);
    Project project;
    if (existed)
        QVERIFY(QDir(project.work.path()).mkdir(QStringLiteral("cpri_0")));
    auto d = project.newDialog();
    box(d.get(), "speedSel98304")->click();
    box(d.get(), "speedEnable98304")->click();
    CpriHost::ModalDriver driver;
    driver.setAnswer(QMessageBox::StandardButton(answer));
    driver.start();
    widget<QPushButton>(d.get(), "Calculate")->click();
    QVERIFY(QFileInfo(project.work.path() + QStringLiteral("/cpri_0/temp/cpri")).isDir());
    widget<QPushButton>(d.get(), "okButton")->click();
    driver.stop();
    const QStringList asked = titles(driver.seenBoxes()).filter(QStringLiteral("already exists"));
    QCOMPARE(asked.size(), existed ? 1 : 0);
    QTEST(d->result() == QDialog::Accepted, "accepted");
}

void TestFrame::instanceNameIsTheProposedFileName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("file");
    QTest::newRow("a second core") << "cpri_1" << "cpri_1";
    QTest::newRow("no name: the descriptor's target") << "" << "cpri_0";
}

void TestFrame::instanceNameIsTheProposedFileName()
{
    QFETCH(QString, name);
    Project project;
    IPCPRI::cpri protocol(QStringLiteral(CPRI_PACKAGE_DIR));
    QVERIFY(protocol.loadDescriptor());
    QString file, createIn;
    CpriHost::ModalDriver driver;
    driver.setDialogHandler([&](QDialog *dialog) {
        file = edit(dialog, "fileNameEdit")->text();
        createIn = widget<QLabel>(dialog, "createPathLabel")->text();
        dialog->reject();
    });
    driver.start();
    protocol.createConfig(name, project.device);
    driver.stop();
    QTEST(file, "file");
    QCOMPARE(createIn, project.work.path() + QLatin1Char('/') + file);
}

void TestFrame::figureSortsPortsToTheirSides()
{
    PinFigureView view;
    view.setPins(pins(texts({"a_i", "b_o", "c_i[3:0]", "d_o[7:0]", "e_o"})));
    QCOMPARE(view.inputNames(), texts({"a_i", "c_i[3:0]"}));
    QCOMPARE(view.outputNames(), texts({"b_o", "d_o[7:0]", "e_o"}));
    QCOMPARE(view.inputCount(), 2);
    QCOMPARE(view.outputCount(), 3);
    view.setPins({});
    QCOMPARE(view.inputCount() + view.outputCount(), 0);
}

void TestFrame::figureTitleFollowsTheModuleName()
{
    Project project;
    auto d = project.newDialog();
    auto *figure = d->findChild<PinFigureView *>();
    QCOMPARE(figure->title(), QStringLiteral("cpri_top"));
    const int width = figure->sizeHint().width();
    const QString longName = QStringLiteral("a_module_name_wider_than_any_port_name_of_the_core");
    edit(d.get(), "moduleNameEdit")->setText(longName);
    QCOMPARE(figure->title(), longName);
    QVERIFY(figure->sizeHint().width() > width);
    QCOMPARE(figure->size(), figure->sizeHint());
    edit(d.get(), "moduleNameEdit")->clear();
    QCOMPARE(figure->title(), PinFigureView::defaultTitle());
    QCOMPARE(PinFigureView::defaultTitle(), QStringLiteral("cpri"));
    QCOMPARE(figure->sizeHint().width(), width);
}

// Names widen the symbol by their own width, each row adds the same height,
// and a new font is measured afresh.
void TestFrame::figureSizeFollowsNamesRowsAndFont()
{
    const QStringList names = texts({"clock_i", "data_i[63:0]", "ready_o"});
    PinFigureView view;
    view.setPins(pins(names));
    const QSize base = view.sizeHint();
    QCOMPARE(view.size(), base);
    const QString wide = QStringLiteral("a_much_wider_ready_o");
    view.setPins(pins(texts({"clock_i", "data_i[63:0]"}) << wide));
    QCOMPARE(view.sizeHint().width() - base.width(), advance(view, wide) - advance(view, names.last()));
    QCOMPARE(view.sizeHint().height(), base.height());
    view.setPins(pins(names + texts({"x_i"})));
    const int row = view.sizeHint().height() - base.height();
    QVERIFY(row > view.fontMetrics().height());
    view.setPins(pins(names + texts({"x_i", "y_i", "z_o", "w_o"})));
    QCOMPARE(view.sizeHint().height(), base.height() + row + row);
    QCOMPARE(view.sizeHint().width(), base.width());

    QFont big = view.font();
    big.setPointSizeF(big.pointSizeF() * 2);
    view.setFont(big);
    PinFigureView fresh;
    fresh.setFont(big);
    fresh.setPins(view.pins());
    QCOMPARE(view.sizeHint(), fresh.sizeHint());
    QVERIFY(view.sizeHint().width() > base.width());
}

QTEST_MAIN(TestFrame)
#include "tst_frame.moc"
