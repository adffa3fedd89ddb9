// The host's dialog frame (size on screens large and small, proposed file
// name) and its port figure (sides and size).

#include "dialogfixture.h"

#include <ipserdes/pinfigureview.h>
#include <qpa/qwindowsysteminterface.h>

#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTabBar>
#include <QTest>

using IPSERDESIP::PinFigureView;

namespace {

// The offscreen platform's one screen, as a window system reports a new
// resolution: its size, and its available area without a 40 pixel panel.
QRect setScreen(const QSize &size)
{
    const QRect available(QPoint(0, 40), size - QSize(0, 40));
    QWindowSystemInterface::handleScreenGeometryChange(QGuiApplication::primaryScreen(),
                                                       QRect(QPoint(), size), available);
    QWindowSystemInterface::flushWindowSystemEvents();
    return QGuiApplication::primaryScreen()->availableGeometry();
}

// Lets every pending layout request run: they travel one widget level per pass.
void settle()
{
    for (int pass = 0; pass < 4; ++pass)
        QCoreApplication::processEvents();
}

const char *const Controls[] = {"QLabel", "QComboBox", "QLineEdit", "QSpinBox", "QAbstractButton"};

// Visible controls of the frame and a page (Qt's own parts aside) that are
// smaller than asked, or that no scrolling brings whole into sight; and,
// for a dialog that should show all at once, scrolling areas of the page.
QStringList cutOn(QWidget *dialog, QWidget *page, bool scrolls)
{
    QStringList cut;
    for (QWidget *w : dialog->findChildren<QWidget *>()) {
        if (w->objectName().startsWith("qt_") || !w->isVisible()
            || std::none_of(std::begin(Controls), std::end(Controls),
                            [w](const char *kind) { return w->inherits(kind); }))
            continue;
        for (QWidget *p = w->parentWidget(); p; p = p->parentWidget()) { // the innermost area first
            if (auto *area = qobject_cast<QScrollArea *>(p);
                area && area->widget()->isAncestorOf(w)) {
                const QPoint at = w->mapTo(area->widget(), QPoint());
                area->horizontalScrollBar()->setValue(at.x());
                area->verticalScrollBar()->setValue(at.y());
            }
        }
        const QSize room = w->size(), wanted = w->sizeHint();
        if (room.width() < wanted.width() || room.height() < wanted.height()
            || w->visibleRegion() != QRegion(w->rect()))
            cut << w->objectName();
    }
    for (const auto *area : page->findChildren<QScrollArea *>())
        if (!scrolls
            && (area->horizontalScrollBar()->isVisible() || area->verticalScrollBar()->isVisible()))
            cut << area->objectName();
    return cut;
}

QStringList words(const char *text)
{
    return split(text, ' ');
}

// Ports named as the core names them: "_o" outputs, a bit range for a bus.
QList<Utils::PinFigure> pins(const char *names)
{
    QList<Utils::PinFigure> list;
    for (const QString &n : words(names))
        list << Utils::PinFigure(n, n.contains("_o"), n.contains('['), Qt::AlignLeft);
    return list;
}

} // namespace

class TestFrame : public QObject
{
    Q_OBJECT

private slots:
    void tabsFitTheDefaultSize();
    void smallScreensScrollTheFrame_data();
    void smallScreensScrollTheFrame();
    void instanceNameIsTheFileName();
    void figureSortsAndSizesPorts();
};

// Each device family on a screen with room. Also: the core's label titles it, captions show, the
// figure is titled by the module name ("module" without one) and grows without taking room from
// the tabs, the dialog as far as the screen has room; Cancel closes.
void TestFrame::tabsFitTheDefaultSize()
{
    const QRect available = setScreen({1600, 1000});
    for (const QString &device : words("DVA-1-C2I1 DVB-1-C2I1 DVC-1-C2I1")) {
        Session s(Case().on(device));
        cpridlg *d = s.d.get();
        d->show();
        auto *tabs = w<QTabWidget>(d, "tabWidget");
        for (int i = 0; i < tabs->count(); ++i) {
            tabs->setCurrentIndex(i);
            QCoreApplication::processEvents();
            const QStringList cut = cutOn(d, tabs->currentWidget(), false);
            QVERIFY2(cut.isEmpty(), qPrintable(device + ": " + cut.join(' ')));
        }
        for (QAbstractButton *arrow : tabs->tabBar()->findChildren<QAbstractButton *>())
            QVERIFY(!arrow->isVisible());
        QVERIFY(!w<QScrollArea>(d, "figureArea")->horizontalScrollBar()->isVisible());
        QCOMPARE(d->windowTitle(), "CPRI (Common Public Radio Interface) Link Core");
        QStringList shown;
        const QWidget *frame = w<QScrollArea>(d, "frameArea")->widget();
        for (QWidget *x : frame->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly))
            shown << x->property("text").toString().replace(' ', '_')
                  << x->property("currentText").toString();
        for (const QString &text :
             words("File_Name Module_Name Language Synthesis_Tool Create_In Verilog Built-in"))
            QVERIFY2(shown.contains(text), qPrintable(text));
        auto *figure = d->findChild<PinFigureView *>();
        const QSize area = tabs->size();
        const auto right = [d](QWidget *x) { return x->mapTo(d, QPoint(x->width(), 0)).x(); };
        // No second margin, no frame.
        QCOMPARE(right(tabs), right(d->findChild<QDialogButtonBox *>()));
        s.act("checkBoxDRPPort");
        settle();
        QCOMPARE(figure->size(), figure->sizeHint());
        w<QLineEdit>(d, "moduleNameEdit")->clear();
        QCOMPARE(figure->title(), "module"); // a symbol without a module name
        s.act("speedSel1216512;speedEnable1216512;RealTimeVendor;GMII");
        settle();
        QCOMPARE(tabs->size(), area);
        // A module name wider than the ports, and the screen.
        w<QLineEdit>(d, "moduleNameEdit")->setText(QString(120, 'm'));
        settle();
        QVERIFY(figure->title() == QString(120, 'm') && figure->size() == figure->sizeHint());
        QVERIFY(tabs->width() == area.width() && d->frameGeometry().width() == available.width());
        s.act("cancelButton");
        QVERIFY(!d->isVisible());
    }
}

// clang-format off
void TestFrame::smallScreensScrollTheFrame_data()
{
    QTest::addColumn<QSize>("screen");
    // Frameless: the window system reports no frame, and a title bar is kept free.
    QTest::addColumn<bool>("frameless");
    QTest::newRow("1280x720") << QSize(1280, 720) << false;
    QTest::newRow("1024x768") << QSize(1024, 768) << false;
    QTest::newRow("1024x768 frameless") << QSize(1024, 768) << true;
    QTest::newRow("1600x1000") << QSize(1600, 1000) << false;
}
// clang-format on

// The frame never opens larger than the screen's available area and scrolls what does not fit,
// OK, Cancel and Help always in sight. After each speed class the figure's pane shows the whole
// symbol, the dialog having grown as far as the screen has room.
void TestFrame::smallScreensScrollTheFrame()
{
    QFETCH(QSize, screen);
    QFETCH(bool, frameless);
    const QRect available = setScreen(screen);
    Session s;
    cpridlg *d = s.d.get();
    d->setWindowFlag(Qt::FramelessWindowHint, frameless);
    d->show();
    settle();
    const int titleBar =
        frameless ? d->style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, d) : 0;
    const QSize opened = d->size(),
                room = available.size() - (d->frameGeometry().size() - opened) - QSize(0, titleBar);
    QCOMPARE(opened, d->sizeHint().boundedTo(room));
    auto *tabs = w<QTabWidget>(d, "tabWidget");
    auto *frame = w<QScrollArea>(d, "frameArea"), *pane = w<QScrollArea>(d, "figureArea");
    auto *figure = d->findChild<PinFigureView *>();
    for (const QString &step : QStringList{""} + Classes) {
        s.act(step);
        settle();
        QVERIFY2(available.contains(d->frameGeometry()) && d->height() <= room.height(),
                 qPrintable(step));
        QVERIFY2(figure->width() == figure->sizeHint().width()
                     && pane->viewport()->width() >= figure->width()
                     && !pane->horizontalScrollBar()->isVisible(),
                 qPrintable(step));
        QCOMPARE(d->width(), qMin(room.width(), qMax(opened.width(), d->sizeHint().width())));
        QCOMPARE(frame->horizontalScrollBar()->isVisible(), d->sizeHint().width() > room.width());
        for (QPushButton *button :
             d->findChildren<QPushButton *>(QRegularExpression("^(ok|cancel|help)Button$")))
            QVERIFY(button->isVisible() && button->visibleRegion() == QRegion(button->rect())
                    && d->rect().contains(QRect(button->mapTo(d, QPoint()), button->size())));
    }
    for (int i = 0; i < tabs->count(); ++i) {
        tabs->setCurrentIndex(i);
        QCoreApplication::processEvents();
        const QStringList cut = cutOn(d, tabs->currentWidget(), true);
        QVERIFY2(cut.isEmpty(), qPrintable(cut.join(' ')));
    }
    // The splitter moved as far as it goes: nothing folds away.
    d->findChild<QSplitter *>()->setSizes({0, 0});
    settle();
    QVERIFY(pane->viewport()->width() >= figure->width()
            && tabs->width() == tabs->sizeHint().width());
}

// A new core's instance name proposes its file name, and names the folder it is created in;
// an opened core shows its own.
void TestFrame::instanceNameIsTheFileName()
{
    Session s;
    s.d->setCreating("cpri_7", s.device);
    QCOMPARE(s.see("fileNameEdit") + s.see("createPathLabel"),
             "fileNameEdit cpri_7createPathLabel ~/cpri_7");
    IPSERDESIP::protocolGenDlg bare; // a core that loads nothing of its own opens any record
    QVERIFY(bare.setOpening(parse("file=f;module=m"))
            && bare.fileName() + bare.moduleName() == "fm");
}

// Sides in list order; a name or title widens the symbol by its width, each
// row adds the same height; a new font is measured afresh.
void TestFrame::figureSortsAndSizesPorts()
{
    PinFigureView view;
    view.setPins(pins("a_i b_o c_i[3:0] d_o[7:0] e_o"));
    QCOMPARE(view.inputNames() + view.outputNames()
                 << QString::number(view.inputCount() * 10 + view.outputCount()),
             words("a_i c_i[3:0] b_o d_o[7:0] e_o 23"));
    const QSize base = view.sizeHint();
    const QFontMetrics plain(view.font());
    view.setPins(pins("a_i b_o c_i[3:0] d_o[7:0] wider_e_o"));
    QCOMPARE(view.sizeHint().width() - base.width(),
             plain.horizontalAdvance(QString("wider_e_o"))
                 - plain.horizontalAdvance(QString("d_o[7:0]")));
    view.setPins(pins("a_i b_o c_i[3:0] d_o[7:0] e_o x_i y_i"));
    const int row = view.sizeHint().height() - base.height();
    view.setPins(pins("a_i b_o c_i[3:0] d_o[7:0] e_o x_i y_i z_i w_o"));
    QCOMPARE(view.sizeHint(), base + QSize(0, row + row));
    const QFont big(view.font().family(), view.font().pointSize() * 2);
    view.setFont(big);
    QWidget holder; // its font is the figure's from the start
    holder.setFont(big);
    PinFigureView fresh(&holder);
    fresh.setPins(view.pins());
    QCOMPARE(view.sizeHint(), fresh.sizeHint());
    PinFigureView one, other; // the same sizes, other names: the names and wires are drawn
    one.setPins(pins("ab_i cd_o[1:0]")), other.setPins(pins("ba_i dc_o[1:0]"));
    QVERIFY(one.grab().toImage() != other.grab().toImage());
    const QString title = QString("a_title_wider_than_the_ports_of_the_figure");
    view.setTitle(title);
    const int titled = view.sizeHint().width();
    view.setTitle(title + title);
    const QFontMetrics metrics = view.fontMetrics();
    QCOMPARE(view.sizeHint().width() - titled,
             metrics.horizontalAdvance(title + title) - metrics.horizontalAdvance(title));
}

QTEST_MAIN(TestFrame)
#include "tst_frame.moc"
