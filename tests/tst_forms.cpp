// The four tab forms of the configuration dialog: which widgets they hold,
// where, with which captions, items, ranges and initial states.

#include <dialog/forms/tabforms.h>

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMetaProperty>
#include <QRadioButton>
#include <QScrollArea>
#include <QSpinBox>
#include <QTest>
#include <QVBoxLayout>

#include <functional>
#include <memory>

namespace {

// A page with one form built on it; forms are "core", "phy", "afe" and "opt".
struct FormPage
{
    QWidget page;
    std::function<void()> retranslate;
};

template <class Ui>
void build(FormPage &f)
{
    auto ui = std::make_shared<Ui>();
    ui->setupUi(&f.page);
    f.retranslate = [ui, &f] { ui->retranslateUi(&f.page); };
}

std::unique_ptr<FormPage> makeForm(const QString &form, const QString &pageName = QString())
{
    auto f = std::make_unique<FormPage>();
    f->page.setObjectName(pageName);
    if (form == QLatin1String("core"))
        build<IPCPRI::core_config>(*f);
    else if (form == QLatin1String("phy"))
        build<IPCPRI::phy_config>(*f);
    else if (form == QLatin1String("afe"))
        build<IPCPRI::afe_config>(*f);
    else
        build<IPCPRI::opt_config>(*f);
    return f;
}

// Object name of the nearest enclosing group box, or of the scroll content.
QString container(QWidget *w)
{
    for (QWidget *p = w->parentWidget(); p; p = p->parentWidget())
        if (qobject_cast<QGroupBox *>(p) || p->objectName() == QLatin1String("scrollAreaWidgetContents"))
            return p->objectName();
    return QStringLiteral("<outside the scroll content>");
}

QString textOf(QWidget *w)
{
    if (auto *b = qobject_cast<QAbstractButton *>(w))
        return b->text();
    if (auto *l = qobject_cast<QLabel *>(w))
        return l->text();
    if (auto *g = qobject_cast<QGroupBox *>(w))
        return g->title();
    if (auto *e = qobject_cast<QLineEdit *>(w))
        return e->text();
    return QString();
}

// A property as text; enumerations by their key, size policies as "H/V".
QString propertyText(QObject *o, const char *name)
{
    const int index = o->metaObject()->indexOfProperty(name);
    if (index < 0)
        return QStringLiteral("<no such property>");
    const QMetaProperty p = o->metaObject()->property(index);
    const QVariant v = p.read(o);
    if (p.isEnumType())
        return QString::fromLatin1(p.enumerator().valueToKey(v.toInt()));
    if (v.userType() != QMetaType::QSizePolicy)
        return v.toString();
    const auto sp = v.value<QSizePolicy>();
    const QMetaEnum e = QMetaEnum::fromType<QSizePolicy::Policy>();
    return QString::fromLatin1(e.valueToKey(sp.horizontalPolicy())) + QLatin1Char('/')
           + QString::fromLatin1(e.valueToKey(sp.verticalPolicy()));
}

// Notes the size the scroll content has when the scroll area adopts it,
// i.e. the size it was built with, before the scroll area resizes it.
class ContentSizeProbe : public QObject
{
public:
    QSize size;
    bool eventFilter(QObject *o, QEvent *e) override
    {
        if (e->type() == QEvent::ParentChange && o->objectName() == QLatin1String("scrollAreaWidgetContents"))
            size = static_cast<QWidget *>(o)->size();
        return false;
    }
};

QtMessageHandler previousHandler = nullptr;

// The off-screen platform reports each shown window; that note is not a finding.
void quietHandler(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (!message.contains(QLatin1String("does not support propagateSizeHints")))
        previousHandler(type, context, message);
}

} // namespace

class TestForms : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void namedWidgets_data();
    void namedWidgets();
    void comboBoxItems_data();
    void comboBoxItems();
    void spinBoxRanges_data();
    void spinBoxRanges();
    void pageFrame_data();
    void pageFrame();
    void widgetProperties_data();
    void widgetProperties();
};

void TestForms::initTestCase()
{
    previousHandler = qInstallMessageHandler(quietHandler);
}

void TestForms::namedWidgets_data()
{
    QTest::addColumn<QString>("form");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("cls");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("box");
    QTest::addColumn<bool>("checked");
    using Items = std::initializer_list<std::pair<const char *, const char *>>;
    const char *form = "core";
    // Widgets of one kind in one container, given as object name and caption.
    const auto in = [&form](const char *box, const char *cls, Items items, bool firstChecked = false) {
        bool checked = firstChecked;
        for (const auto &item : items) {
            QTest::addRow("%s %s", form, item.first)
                << QString::fromLatin1(form) << QString::fromLatin1(item.first) << QString::fromLatin1(cls)
                << QString::fromUtf8(item.second) << QString::fromLatin1(box) << checked;
            checked = false;
        }
    };
    const char *content = "scrollAreaWidgetContents";
    const char *gb = "QGroupBox", *cb = "QCheckBox", *rb = "QRadioButton", *lb = "QLabel",
               *le = "QLineEdit", *co = "QComboBox", *sb = "QSpinBox";

    in(content, gb, {{"groupBox", "Speed Selection"}, {"groupBox_2", "Speed Enable"},
                     {"groupBox_3", "Master or Slave"}, {"groupBox_4", "Ethernet Selection"},
                     {"groupBox_5", ""}});
    in("groupBox", cb, {{"speedSel3072", "3.072G and Under"}, {"speedSel6144", "6.144G and Under"},
                        {"speedSel98304", "9.8304G and Under"}, {"speedSel101376", "10.1376G and Under"},
                        {"speedSel1216512", "12.16512G and Under"}});
    in("groupBox_2", cb, {{"speedEnable06144", "0.6144Gbps"}, {"speedEnable12288", "1.2288Gbps"},
                          {"speedEnable24576", "2.4576Gbps"}, {"speedEnable3072", "3.072Gbps"},
                          {"speedEnable49152", "4.9152Gbps"}, {"speedEnable6144", "6.144Gbps"},
                          {"speedEnable98304", "9.8304Gbps"}, {"speedEnable811008", "8.11008Gbps"},
                          {"speedEnable101376", "10.1376Gbps"}, {"speedEnable1216512", "12.16512Gbps"}});
    in("groupBox_2", "QWidget",
       {{"widget", ""}, {"widget_2", ""}, {"widget_3", ""}, {"widget_4", ""}, {"widget_6", ""}});
    in("groupBox_3", rb, {{"Master", "Master"}, {"Slave", "Slave"}}, true);
    in("groupBox_4", rb, {{"MII", "MII"}, {"GMII", "GMII"}}, true);
    in("groupBox_5", cb,
       {{"FixedConfigEnable", "Fixed Config Enable"}, {"RealTimeVendor", "Real Time Vendor "}});
    in("groupBox_5", lb, {{"label", "Config Clk Period"}, {"label_2", "(1~150MHz)"}});
    in("groupBox_5", le, {{"ConfigClkPeriod", ""}});
    in("groupBox_5", gb, {{"groupBox_6", "Preset configuration"}});
    in("groupBox_6", rb, {{"ProtocolVersion1", "1"}, {"ProtocolVersion2", "2"}}, true);
    in("groupBox_6", le, {{"EthernetPointer", ""}, {"HDLCRate", ""}, {"ScramblerSeed", ""},
                          {"HDLCByte", ""}, {"HDLCMask", ""}});
    in("groupBox_6", lb, {{"label_3", "Initial Protocol Version"}, {"label_5", "Initial Ethernet Pointer"},
                          {"label_8", "(6'h14~6'h3f)"}, {"label_11", "Initial HDLC Rate"},
                          {"label_9", "(8'h0~8'h7)"}, {"label_4", "Initial Scrambler Seed"},
                          {"label_7", "(31'h0~31'h7fffffff)"}, {"label_14", "User HDLC Byte"},
                          {"label_10", "(4'h0~4'hf)"}, {"label_13", "User HDLC Mask"},
                          {"label_12", "(16'h0~16'hffff)"}});
    form = "phy";
    in(content, gb, {{"groupBox", "Base Parameters"}, {"groupBox_2", "Refclk Selection"},
                     {"groupBoxEncodingAndDecoding", "Encoding and Decoding"}});
    in(content, "QPushButton", {{"Calculate", "Calculate"}});
    in("groupBox", co, {{"ChannelSel", ""}, {"LoopbackMode", ""}});
    in("groupBox", le, {{"lineRate", ""}});
    in("groupBox_2", co, {{"refClkSource", ""}, {"PLL_Selection", ""}});
    in("groupBox_2", le, {{"refClkFreq", ""}});
    in("groupBoxEncodingAndDecoding", co, {{"comboBox64B_66B_Mode", ""}});
    form = "afe";
    in(content, gb, {{"groupBox", "TX"}, {"groupBox_2", "RX"}});
    in("groupBox", gb, {{"groupBox_3", "FFE Mode"}});
    in("groupBox", co, {{"differeSwingComboBox", ""}});
    in("groupBox_3", co, {{"ffeModeCombox", ""}});
    in("groupBox_3", sb, {{"cmSpinBox", ""}, {"c1SpinBox", ""}});
    in("groupBox_3", lb,
       {{"c0Lael", "TextLabel"}, {"label", "(0~19)"}, {"label_3", "(21~40)"}, {"label_2", "(0~19)"}});
    in("groupBox_2", gb, {{"groupBox_4", "Equalization"}});
    in("groupBox_2", co, {{"sdThresholdComboBox", ""}});
    in("groupBox_4", co, {{"equalizationModeCombox", ""}});
    in("groupBox_4", sb, {{"attSpinBox", ""}, {"boostSpinBox", ""}, {"biasSpinBox", ""}});
    in("groupBox_4", lb, {{"label_14", "(0~10)"}, {"label_15", "(0~15)"}, {"label_16", "(0~15)"}});
    form = "opt";
    in(content, cb, {{"checkBoxLoopBackPorts", "Loopback Ports"}, {"checkBoxDRPPort", "DRP Ports"}});
    in(content, gb, {{"groupBox", "TX Ports "}, {"groupBox_2", "RX Ports "}});
    in("groupBox", cb, {{"checkBoxPPGP", "PRBS Pattern Generator Ports"},
                        {"checkBoxDifferSwingPorts", "Differential Swing Ports"},
                        {"checkBoxFFEPorts", "FFE Ports"}});
    in("groupBox_2", cb, {{"checkBoxPPCP", "PRBS Pattern Checker Ports"},
                          {"checkBoxEqualizationPorts", "Equalization Ports"},
                          {"checkBoxBIASPorts", "BIAS Ports"}});
}

// Every named widget exists once, with its kind, caption and container,
// enabled, not hidden, and checked only where it is the initial choice.
void TestForms::namedWidgets()
{
    QFETCH(QString, form);
    QFETCH(QString, name);
    auto f = makeForm(form);
    const auto found = f->page.findChildren<QWidget *>(name);
    QCOMPARE(found.size(), 1);
    QWidget *w = found.first();
    QTEST(QString::fromLatin1(w->metaObject()->className()), "cls");
    QTEST(textOf(w), "text");
    QTEST(container(w), "box");
    auto *button = qobject_cast<QAbstractButton *>(w);
    QTEST(button && button->isChecked(), "checked");
    if (auto *group = qobject_cast<QGroupBox *>(w))
        QVERIFY(!group->isCheckable());
    QVERIFY(w->isEnabled());
    QVERIFY(!w->isHidden());
}

void TestForms::comboBoxItems_data()
{
    QTest::addColumn<QString>("form");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("items");
    QTest::addColumn<int>("index");
    const QStringList autoManual = {QStringLiteral("Auto"), QStringLiteral("Manual")};
    QTest::newRow("encoding mode is SerDes or Fabric") << "phy" << "comboBox64B_66B_Mode"
        << QStringList({QStringLiteral("SerDes"), QStringLiteral("Fabric")}) << 0;
    QTest::newRow("FFE mode is Auto or Manual") << "afe" << "ffeModeCombox" << autoManual << 0;
    QTest::newRow("equalization mode is Auto or Manual")
        << "afe" << "equalizationModeCombox" << autoManual << 0;
    for (const char *name : {"ChannelSel", "LoopbackMode", "refClkSource", "PLL_Selection"})
        QTest::addRow("PHY %s starts empty", name) << "phy" << name << QStringList() << -1;
    for (const char *name : {"differeSwingComboBox", "sdThresholdComboBox"})
        QTest::addRow("AFE %s starts empty", name) << "afe" << name << QStringList() << -1;
}

void TestForms::comboBoxItems()
{
    QFETCH(QString, form);
    QFETCH(QString, name);
    auto f = makeForm(form);
    auto *combo = f->page.findChild<QComboBox *>(name);
    QVERIFY(combo);
    QStringList items;
    for (int i = 0; i < combo->count(); ++i)
        items << combo->itemText(i);
    QTEST(items, "items");
    QTEST(combo->currentIndex(), "index");
}

void TestForms::spinBoxRanges_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("maximum");
    QTest::addColumn<int>("initial");
    QTest::newRow("Cm") << "cmSpinBox" << 19 << 0;
    QTest::newRow("C1") << "c1SpinBox" << 19 << 0;
    QTest::newRow("ATT") << "attSpinBox" << 10 << 7;
    QTest::newRow("BOOST") << "boostSpinBox" << 15 << 9;
    QTest::newRow("BIAS") << "biasSpinBox" << 15 << 7;
}

// The AFE spin boxes start at their default, have no step buttons and clamp.
void TestForms::spinBoxRanges()
{
    QFETCH(QString, name);
    QFETCH(int, maximum);
    auto f = makeForm(QStringLiteral("afe"));
    auto *spin = f->page.findChild<QSpinBox *>(name);
    QVERIFY(spin);
    QCOMPARE(spin->minimum(), 0);
    QCOMPARE(spin->maximum(), maximum);
    QTEST(spin->value(), "initial");
    QCOMPARE(spin->buttonSymbols(), QAbstractSpinBox::NoButtons);
    spin->setValue(-3);
    QCOMPARE(spin->value(), 0);
    spin->setValue(maximum + 5);
    QCOMPARE(spin->value(), maximum);
}

void TestForms::pageFrame_data()
{
    QTest::addColumn<QString>("form");
    QTest::addColumn<QString>("pageName");
    QTest::addColumn<QString>("expectedName");
    QTest::addColumn<QSize>("pageSize");
    QTest::addColumn<QSize>("contentSize");
    const struct { const char *form, *cls; QSize page, content; } forms[] = {
        {"core", "IPCPRI__core_config", {666, 606}, {644, 584}},
        {"phy", "IPCPRI__phy_config", {464, 408}, {442, 386}},
        {"afe", "IPCPRI__afe_config", {615, 300}, {593, 278}},
        {"opt", "IPCPRI__opt_config", {517, 259}, {495, 237}},
    };
    for (const auto &f : forms) {
        QTest::addRow("%s, unnamed page", f.form) << f.form << "" << f.cls << f.page << f.content;
        QTest::addRow("%s, named page", f.form) << f.form << "tabPage" << "tabPage" << f.page << f.content;
    }
}

// Each page is named, sized and titled, and holds one widget-resizable
// scroll area in a vertical layout; the content is built at its own size.
void TestForms::pageFrame()
{
    QFETCH(QString, form);
    QFETCH(QString, pageName);
    ContentSizeProbe probe;
    qApp->installEventFilter(&probe);
    auto f = makeForm(form, pageName);
    qApp->removeEventFilter(&probe);
    QTEST(f->page.objectName(), "expectedName");
    QTEST(f->page.size(), "pageSize");
    QCOMPARE(f->page.windowTitle(), QStringLiteral("Form"));
    auto *layout = qobject_cast<QVBoxLayout *>(f->page.layout());
    QVERIFY(layout);
    QCOMPARE(layout->objectName(), QStringLiteral("verticalLayout"));
    QCOMPARE(layout->count(), 1);
    auto *scroll = qobject_cast<QScrollArea *>(layout->itemAt(0)->widget());
    QVERIFY(scroll);
    QCOMPARE(scroll->objectName(), QStringLiteral("scrollArea"));
    QVERIFY(scroll->widgetResizable());
    QVERIFY(scroll->widget());
    QCOMPARE(scroll->widget()->objectName(), QStringLiteral("scrollAreaWidgetContents"));
    QTEST(probe.size, "contentSize");
}

// Re-applying the texts asks only the form's context, and for every text shown.
void TestForms::widgetProperties_data()
{
    QTest::addColumn<QString>("form");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *form, const char *name, const char *property, const char *expected) {
        QTest::addRow("%s %s %s", form, name, property) << QString::fromLatin1(form)
            << QString::fromLatin1(name) << QByteArray(property) << QString::fromLatin1(expected);
    };
    row("core", "ScramblerSeed", "minimumWidth", "100");
    row("core", "HDLCMask", "minimumWidth", "100");
    for (const char *line : {"line", "line_2", "line_3"}) {
        row("core", line, "frameShape", "VLine");
        row("core", line, "frameShadow", "Sunken");
    }
    row("phy", "lineRate", "sizePolicy", "Preferred/Fixed");
    row("phy", "refClkFreq", "sizePolicy", "Preferred/Fixed");
    row("phy", "Calculate", "toolTip", "");
    row("phy", "Calculate", "layoutDirection", "LeftToRight");
    row("afe", "c0Lael", "minimumHeight", "25");
    row("afe", "label_3", "minimumHeight", "25");
    row("afe", "attSpinBox", "minimumWidth", "50");
    row("afe", "equalizationModeCombox", "sizeAdjustPolicy", "AdjustToContents");
}

void TestForms::widgetProperties()
{
    QFETCH(QString, form);
    QFETCH(QString, name);
    QFETCH(QByteArray, property);
    auto f = makeForm(form);
    QWidget *w = f->page.findChild<QWidget *>(name);
    QVERIFY2(w, qPrintable(name));
    QTEST(propertyText(w, property.constData()), "expected");
}

// Checking one button of an exclusive pair unchecks the other, both ways.
QTEST_MAIN(TestForms)
#include "tst_forms.moc"
