// The host's dialog frame (default size, folder question, proposed file name)
// and its port figure (sides and size).

#include "dialogfixture.h"
#include "testrecords.h"

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
    return QString::fromLatin1(text).split(QLatin1Char(' '));
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
    void onlyAFolderFromBeforeIsAskedAbout_data();
    void onlyAFolderFromBeforeIsAskedAbout();
    void figureSortsAndSizesPorts();
};

// Each device family. Also: the core's label titles it, captions show, the figure is titled by
// the module name ("cpri" without one) and grows without taking room from the tabs; Cancel closes.
void TestFrame::tabsFitTheDefaultSize()
{
    for (const QString &device : words("DVA-1-C2I1 DVB-1-C2I1 DVC-1-C2I1")) {
        Project project(device);
        auto d = project.newDialog();
        d->show();
        auto *tabs = d->findChild<QTabWidget *>();
        for (int i = 0; i < tabs->count(); ++i) {
            tabs->setCurrentIndex(i);
            QCoreApplication::processEvents();
            const QStringList cut = cutOn(d.get(), tabs->currentWidget());
            QVERIFY2(cut.isEmpty(), qPrintable(device + QLatin1String(": ") + cut.join(QLatin1Char(' '))));
        }
        for (QAbstractButton *arrow : tabs->tabBar()->findChildren<QAbstractButton *>())
            QVERIFY(!arrow->isVisible());
        QVERIFY(!widget<QScrollArea>(d.get(), "figureArea")->horizontalScrollBar()->isVisible());
        QCOMPARE(d->windowTitle(), QStringLiteral("CPRI (Common Public Radio Interface) Link Core"));
        QStringList shown;
        for (QWidget *w : d->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly))
            shown << w->property("text").toString().replace(QLatin1Char(' '), QLatin1Char('_'))
                  << w->property("currentText").toString();
        for (const QString &text : words("File_Name Module_Name Language Synthesis_Tool Create_In Verilog Built-in"))
            QVERIFY2(shown.contains(text), qPrintable(text));
        auto *figure = d->findChild<PinFigureView *>();
        const QSize area = tabs->size();
        box(d.get(), "checkBoxDRPPort")->click();
        QCoreApplication::processEvents();
        QCOMPARE(figure->size(), figure->sizeHint());
        edit(d.get(), "moduleNameEdit")->clear();
        QCOMPARE(figure->title(), QStringLiteral("cpri"));
        for (const QString &name : words("speedSel1216512 speedEnable1216512 RealTimeVendor GMII"))
            d->findChild<QAbstractButton *>(name)->click();
        QCoreApplication::processEvents();
        edit(d.get(), "moduleNameEdit")->setText(QString(120, QLatin1Char('m'))); // wider than the ports
        QCoreApplication::processEvents();
        QVERIFY(figure->title() == edit(d.get(), "moduleNameEdit")->text() && figure->size() == figure->sizeHint());
        QCOMPARE(tabs->size(), area);
        widget<QPushButton>(d.get(), "cancelButton")->click();
        QVERIFY(!d->isVisible());
    }
}

void TestFrame::onlyAFolderFromBeforeIsAskedAbout_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("existed");
    QTest::addColumn<bool>("asked");
    QTest::newRow("made by the calculation") << "cpri_1" << false << false;
    QTest::newRow("no name: the descriptor's") << "" << false << false;
    QTest::newRow("there before, reused") << "cpri_1" << true << true;
    QTest::newRow("an opened core's own") << "ip1" << true << false;
}

// The instance name is the file name; an opened core shows its file, device, language and tool.
void TestFrame::onlyAFolderFromBeforeIsAskedAbout()
{
    QFETCH(QString, name);
    QFETCH(bool, existed);
    QFETCH(bool, asked);
    Project project;
    const QString file = name.isEmpty() ? QStringLiteral("cpri_0") : name;
    QVERIFY(!existed || QDir(project.work.path()).mkdir(file));
    auto d = std::make_unique<IPCPRI::cpridlg>(Project::descriptor(), &project.record, nullptr);
    if (name == QLatin1String("ip1")) {
        namespace Key = TestRecords::Key;
        const IPCPRI::ConfigMap saved = TestRecords::with(TestRecords::with(TestRecords::with(TestRecords::typical(),
            Key::Language, 1), Key::TargetDevice, QStringLiteral("DVB-1-C2I1")), Key::Module, QStringLiteral("top"));
        QVERIFY(d->setOpening(TestRecords::with(saved, Key::SynthesisTool, QStringLiteral("Third-party"))));
        QCOMPARE(d->languages().value(d->uiLanguageIndex()) + d->uiSynthesisTool() + d->device().id() + d->moduleName(),
                 QStringLiteral("VHDLThird-partyDVB-1-C2I1top"));
    } else {
        d->setCreating(name, project.device);
        box(d.get(), "speedSel98304")->click();
        box(d.get(), "speedEnable98304")->click();
    }
    QCOMPARE(edit(d.get(), "fileNameEdit")->text(), file);
    QCOMPARE(widget<QLabel>(d.get(), "createPathLabel")->text(), project.work.path() + QLatin1Char('/') + file);
    CpriHost::ModalDriver driver; // answers Yes
    driver.start();
    widget<QPushButton>(d.get(), "Calculate")->click();
    widget<QPushButton>(d.get(), "okButton")->click();
    driver.stop();
    const QString question = QStringLiteral("Question: The folder \"%1/%2\" already exists. Its files may be "
                                            "overwritten.\nDo you want to use it anyway?").arg(project.work.path(), file);
    QCOMPARE(titles(driver.seenBoxes()).count(question), int(asked));
    QCOMPARE(d->result(), int(QDialog::Accepted));
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
    const QString title = QStringLiteral("a_title_wider_than_the_ports_of_the_figure");
    view.setTitle(title);
    const int titled = view.sizeHint().width();
    view.setTitle(title + title);
    QCOMPARE(view.sizeHint().width() - titled,
             view.fontMetrics().horizontalAdvance(title + title) - view.fontMetrics().horizontalAdvance(title));
}

QTEST_MAIN(TestFrame)
#include "tst_frame.moc"
