// The host's dialog frame (default size, proposed file name)
// and its port figure (sides and size).

#include "dialogfixture.h"

#include <ipserdes/pinfigureview.h>

#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTabBar>
#include <QTest>

using IPSERDESIP::PinFigureView;

namespace {

// Visible controls smaller than asked (Qt's own parts aside); scrolling page areas.
QStringList cutOn(QWidget *dialog, QWidget *page)
{
    QStringList cut;
    for (QWidget *w : dialog->findChildren<QWidget *>()) {
        const QSize room = w->size(), wanted = w->sizeHint();
        for (const char *kind : {"QLabel", "QComboBox", "QLineEdit", "QSpinBox", "QAbstractButton"})
            if (w->inherits(kind) && w->isVisible() && !w->objectName().startsWith(QLatin1String("qt_"))
                && (room.width() < wanted.width() || room.height() < wanted.height()))
                cut << w->objectName();
        if (const auto *area = qobject_cast<QScrollArea *>(w); area && page->isAncestorOf(area)
            && (area->horizontalScrollBar()->isVisible() || area->verticalScrollBar()->isVisible()))
            cut << area->objectName();
    }
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
        list << Utils::PinFigure(n, n.contains(QLatin1String("_o")), n.contains(QLatin1Char('[')), Qt::AlignLeft);
    return list;
}

} // namespace

class TestFrame : public QObject
{
    Q_OBJECT

private slots:
    void tabsFitTheDefaultSize();
    void instanceNameIsTheFileName();
    void figureSortsAndSizesPorts();
};

// Each device family. Also: the core's label titles it, captions show, the figure is titled by
// the module name ("cpri" without one) and grows without taking room from the tabs; Cancel closes.
void TestFrame::tabsFitTheDefaultSize()
{
    for (const QString &device : words("DVA-1-C2I1 DVB-1-C2I1 DVC-1-C2I1")) {
        Session s(device);
        cpridlg *d = s.d.get();
        d->show();
        auto *tabs = w<QTabWidget>(d, "tabWidget");
        for (int i = 0; i < tabs->count(); ++i) {
            tabs->setCurrentIndex(i);
            QCoreApplication::processEvents();
            const QStringList cut = cutOn(d, tabs->currentWidget());
            QVERIFY2(cut.isEmpty(), qPrintable(device + ": " + cut.join(' ')));
        }
        for (QAbstractButton *arrow : tabs->tabBar()->findChildren<QAbstractButton *>())
            QVERIFY(!arrow->isVisible());
        QVERIFY(!w<QScrollArea>(d, "figureArea")->horizontalScrollBar()->isVisible());
        QCOMPARE(d->windowTitle(), "CPRI (Common Public Radio Interface) Link Core");
        QStringList shown;
        for (QWidget *x : d->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly))
            shown << x->property("text").toString().replace(' ', '_') << x->property("currentText").toString();
        for (const QString &text : words("File_Name Module_Name Language Synthesis_Tool Create_In Verilog Built-in"))
            QVERIFY2(shown.contains(text), qPrintable(text));
        auto *figure = d->findChild<PinFigureView *>();
        const QSize area = tabs->size();
        s.act("checkBoxDRPPort");
        QCoreApplication::processEvents();
        QCOMPARE(figure->size(), figure->sizeHint());
        w<QLineEdit>(d, "moduleNameEdit")->clear();
        QCOMPARE(figure->title(), "module"); // a symbol without a module name
        s.act("speedSel1216512;speedEnable1216512;RealTimeVendor;GMII");
        w<QLineEdit>(d, "moduleNameEdit")->setText(QString(120, 'm')); // wider than the ports
        QCoreApplication::processEvents();
        QVERIFY(figure->title() == QString(120, 'm') && figure->size() == figure->sizeHint());
        QCOMPARE(tabs->size(), area);
        s.act("cancelButton");
        QVERIFY(!d->isVisible());
    }
}

// A new core's instance name proposes its file name, and names the folder it is created in;
// an opened core shows its own.
void TestFrame::instanceNameIsTheFileName()
{
    Session s;
    s.d->setCreating("cpri_7", s.device);
    QCOMPARE(s.see("fileNameEdit") + s.see("createPathLabel"), "fileNameEdit cpri_7createPathLabel ~/cpri_7");
    IPSERDESIP::protocolGenDlg bare; // a core that loads nothing of its own opens any record
    QVERIFY(bare.setOpening(parse("file=f;module=m")) && bare.fileName() + bare.moduleName() == "fm");
}

// Sides in list order; a name or title widens the symbol by its width, each
// row adds the same height; a new font is measured afresh.
void TestFrame::figureSortsAndSizesPorts()
{
    PinFigureView view;
    view.setPins(pins("a_i b_o c_i[3:0] d_o[7:0] e_o"));
    QCOMPARE(view.inputNames() + view.outputNames() << QString::number(view.inputCount() * 10 + view.outputCount()),
             words("a_i c_i[3:0] b_o d_o[7:0] e_o 23"));
    const QSize base = view.sizeHint();
    const QFontMetrics plain(view.font());
    view.setPins(pins("a_i b_o c_i[3:0] d_o[7:0] wider_e_o"));
    QCOMPARE(view.sizeHint().width() - base.width(),
             plain.horizontalAdvance(QStringLiteral("wider_e_o")) - plain.horizontalAdvance(QStringLiteral("d_o[7:0]")));
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
    const QString title = QStringLiteral("a_title_wider_than_the_ports_of_the_figure");
    view.setTitle(title);
    const int titled = view.sizeHint().width();
    view.setTitle(title + title);
    QCOMPARE(view.sizeHint().width() - titled,
             view.fontMetrics().horizontalAdvance(title + title) - view.fontMetrics().horizontalAdvance(title));
}

QTEST_MAIN(TestFrame)
#include "tst_frame.moc"
