#pragma once

// The dialog tests' user: clicks, types, answers message boxes and looks,
// on a dialog made the way the reference host makes it.

#include <dialog/cpridlg.h>
#include <modaldriver.h>

#include <core/idecore.h>
#include <dev/devicedb.h>
#include <ipcore/ipcorefunctions.h>
#include <ipserdes/serdes.h>

#include <QTemporaryDir>
#include <QTest>
#include <QtWidgets>

#include <memory>

using Record = QMap<QString, QVariant>;

namespace IPCPRI {

// Reads the dialog's private state where no widget shows it.
class CpriDialogProbe
{
public:
    cpridlg *d;
    int biasFlag() const { return d->biasFlag; }
    QStringList freeLanes() const { return d->freeLanes; }
    int freeLaneCount() const { return d->freeLaneCount; }
    QStringList settings() const { return d->serdesSettings; }
    QList<QStringList> routes() const
    {
        return {d->routeLanes, d->routePlls, d->routeRefClocks, d->routeRefFreqs};
    }
    const void *generator() const { return d->serdesGenerator; }
};

} // namespace IPCPRI

using IPCPRI::cpridlg;
using Probe = IPCPRI::CpriDialogProbe;

inline IPSERDESIP::serdes *registry()
{
    return IPSERDESIP::serdes::instance();
}

inline QStringList split(const QString &text, char separator = ';')
{
    return text.split(QLatin1Char(separator), Qt::SkipEmptyParts);
}

// "key=value;key=value" as a record of texts (loading converts them).
inline Record parse(const QString &pairs)
{
    Record r;
    for (const QString &pair : split(pairs))
        r.insert(pair.section('=', 0, 0), pair.section('=', 1));
    return r;
}

// A record as sorted "key=value" lines: ints as "#n", bools as true/false.
inline QStringList show(const Record &r)
{
    QStringList lines;
    for (auto it = r.cbegin(); it != r.cend(); ++it)
        lines << it.key() + '=' + (it->type() == QVariant::Int ? "#" : "") + it->toString();
    return lines;
}

// The rate boxes in rate order, 0.6144 to 12.16512 Gbps.
inline const QStringList Rates = split("speedEnable06144 speedEnable12288 speedEnable24576 "
                                       "speedEnable3072 speedEnable49152 speedEnable6144 "
                                       "speedEnable98304 speedEnable811008 speedEnable101376 "
                                       "speedEnable1216512",
                                       ' ');
inline const QStringList Classes =
    split("speedSel3072 speedSel6144 speedSel98304 speedSel101376 speedSel1216512", ' ');

// The symbol's ports by group ("group: ports;"), in drawing order.
// clang-format off
inline const QMap<QString, QString> PortGroups = [] {
    QMap<QString, QString> groups;
    for (const QString &group : split(
    "clocks: tx_arst_i rx_arst_i cfg_arst_i tx_rst_i rx_rst_i cfg_rst_i tx_clk_i rx_clk_i cfg_clk_i aux_tx_slot_last_o;"
    "narrow: aux_tx_slot_num_o[5:0] aux_rx_slot_num_o[5:0];"
    "wide: aux_tx_slot_num_o[6:0] aux_rx_slot_num_o[6:0];"
    "d16: iq_tx_req_o[1:0] iq_tx_data_i[15:0] iq_rx_mask_o[1:0] iq_rx_data_o[15:0] rx_data_o[15:0] vendor_tx_req_o[4:0] vendor_tx_data_i[39:0] vendor_rx_data_mask_o[4:0] vendor_rx_data_o[39:0];"
    "d32: iq_tx_req_o[3:0] iq_tx_data_i[31:0] iq_rx_mask_o[3:0] iq_rx_data_o[31:0] rx_data_o[31:0] vendor_tx_req_o[9:0] vendor_tx_data_i[79:0] vendor_rx_data_mask_o[9:0] vendor_rx_data_o[79:0];"
    "d64: iq_tx_req_o[7:0] iq_tx_data_i[63:0] iq_rx_mask_o[7:0] iq_rx_data_o[63:0] rx_data_o[63:0] vendor_tx_req_o[15:0] vendor_tx_data_i[127:0] vendor_rx_data_mask_o[15:0] vendor_rx_data_o[127:0];"
    "frame: aux_tx_hf_num_o[7:0] aux_tx_bf_num_o[7:0] aux_tx_node_bfn_o[11:0] aux_rx_bf_first_w_o aux_rx_slot_last_o aux_rx_bf_num_o[7:0] aux_rx_hf_num_o[7:0] tx_bfn_strobe_i tx_bfn_i[11:0] rx_bfn_strobe_o rx_bfn_o[11:0] iq_rx_valid_o hdlc_tx_req_o hdlc_tx_data_i hdlc_rx_data_valid_o hdlc_rx_data_o;"
    "rtv: up10g_rt_tx_req_o[7:0] up10g_rt_tx_data_i[63:0] up10g_rt_rx_data_o[63:0] up10g_rt_rx_mask_o[7:0] up10g_rt_rx_valid_o;"
    "mii: mii_tx_clk_i mii_tx_arst_i mii_tx_rst_i mii_tx_en_i mii_tx_er_i mii_tx_data_i[3:0] tx_buffer_full_o mii_rx_clk_i mii_rx_arst_i mii_rx_rst_i mii_rx_en_o mii_rx_data_o[3:0] mii_rx_er_o;"
    "gmii: gmii_tx_clk_i gmii_tx_arst_i gmii_tx_rst_i gmii_tx_en_i gmii_tx_er_i gmii_tx_data_i[7:0] gmii_tx_buffer_full_o gmii_rx_clk_i gmii_rx_arst_i gmii_rx_rst_i gmii_rx_data_o[7:0] gmii_rx_en_o gmii_rx_er_o;"
    "control: z130_0_tx_rai_i z130_0_tx_sdi_i z130_0_tx_los_i z130_0_tx_lof_i los_i cfg_sel_i cfg_wr_i cfg_ena_i cfg_addr_i[11:0] cfg_wdata_i[31:0] serq_rstn_i serq_user_rx_clk_i serq_user_tx_clk_i;"
    "status: z130_0_rx_reset_o z130_0_rx_rai_o z130_0_rx_sdi_o z130_0_rx_los_o z130_0_rx_lof_o local_los_o local_lof_o hfnsync_o speed_sel_o[3:0] tx_delay_o[7:0] rx_delay_o[7:0] cfg_rdy_o cfg_rdata_o[31:0] serq_pcs_tx_rst_i serq_pcs_rx_rst_i serq_align_link_o serq_k_lock_o serq_pll_ok_o serq_pll_ck_ref_o serq_pma_rx_lock_o serq_rx_pcs_clk_o serq_tx_pcs_clk_o vendor_rx_data_valid_o serq_rx_fifo_rdusewd_o[4:0] serq_tx_fifo_wrusewd_o[4:0];"
    "loopback: loopback_en_i loopback_mode_i[1:0];"
    "swing: tx_diff_en_i tx_diff_swing_i[3:0];"
    "ffe: tx_ffe_manual_en_i tx_ffe_cm_i[4:0] tx_ffe_c1_i[4:0];"
    "eq: rx_eq_manual_en_i rx_eq_att_i[3:0] rx_eq_boost_i[3:0];"
    "bias: rx_quad_bias_en_i rx_quad_bias_i[3:0];"
    "ppg: tx_prbs_test_en_i tx_prbs_sel_i[2:0] tx_prbs_insert_err_i;"
    "ppc: rx_prbs_test_en_i rx_prbs_sel_i[2:0] rx_prbs_err_clr_i rx_prbs_err_cnt_o[7:0];"
    "drpclk: user_drp_clk_o;"
    "drp: user_drp_addr_i[23:0] user_drp_wren_i user_drp_wrdata_i[31:0] user_drp_strb_i[31:0] user_drp_rden_i user_drp_ready_o user_drp_rdvld_o user_drp_rddata_o[31:0] user_drp_resp_o;"))
        groups.insert(group.section(':', 0, 0).trimmed(), group.section(':', 1).trimmed());
    return groups;
}();
// clang-format on

// A widget by object name; "parent/name" looks inside the named parent.
template<typename T = QWidget>
T *w(QObject *d, const QString &path)
{
    if (path.contains('/'))
        d = d->findChild<QObject *>(path.section('/', 0, 0));
    T *found = d ? d->findChild<T *>(path.section('/', -1)) : nullptr;
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
    for (const QString &step : split(steps)) {
        const QString name = step.section('=', 0, 0), value = step.section('=', 1);
        if (name.endsWith("()")) {
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

// Look: text, items "a|b@current" or "min..max=value"; * checked, ? refused, - disabled, ^ hidden
inline QString look(QWidget *x)
{
    QString s;
    if (auto *b = qobject_cast<QAbstractButton *>(x))
        s = b->text() + (b->isChecked() ? "*" : "");
    else if (auto *e = qobject_cast<QLineEdit *>(x))
        s = e->displayText() + (e->hasAcceptableInput() ? "" : "?");
    else if (auto *l = qobject_cast<QLabel *>(x))
        s = l->text();
    else if (auto *g = qobject_cast<QGroupBox *>(x))
        s = g->title();
    else if (auto *t = qobject_cast<QTabWidget *>(x))
        for (int i = 0; i < t->count(); ++i)
            s += (i ? "|" : "") + t->tabText(i);
    else if (auto *n = qobject_cast<QSpinBox *>(x))
        s = QString("%1..%2=%3").arg(n->minimum()).arg(n->maximum()).arg(n->value());
    else if (auto *c = qobject_cast<QComboBox *>(x)) {
        for (int i = 0; i < c->count(); ++i)
            s += (i ? "|" : "") + c->itemText(i);
        s += '@' + c->currentText();
    }
    return s + (x->isEnabled() ? "" : "-") + (x->isHidden() ? "^" : "");
}

// The port groups of the symbol (see PortGroups); a port outside them,
// or one whose side or bus flag does not follow its name, by name.
inline QString figure(const cpridlg &d)
{
    QStringList names, groups;
    for (const Utils::PinFigure &pin : d.figurePins()) {
        const bool output = pin.name.section('[', 0, 0).endsWith("_o");
        const bool follows = pin.direction == (output ? 1 : 0)
                             && pin.isBus == pin.name.contains('[')
                             && pin.alignment == (output ? Qt::AlignRight : Qt::AlignLeft);
        names << (follows ? pin.name : '!' + pin.name);
    }
    for (int i = 0; i < names.size();) {
        const auto startsHere = [&](const QString &ports) {
            return names.mid(i, split(ports, ' ').size()) == split(ports, ' ');
        };
        auto group = std::find_if(PortGroups.cbegin(), PortGroups.cend(), startsHere);
        groups << (group == PortGroups.cend() ? names[i] : group.key());
        i += group == PortGroups.cend() ? 1 : split(*group, ' ').size();
    }
    return groups.join(' ');
}

// One case, named after what it checks (its test row's name):
//   on(device)    the device, DVA-1 unless named;
//   given(setup)  what other cores hold: "pll:<key>:<Gbps>", "ref:<source>:<MHz>:<users>",
//                 "data:<key>:<int>", "folder" (the core's folder exists), "nodir" (the
//                 working folder is a file), "full" (no free lane);
//   saved(record) the record the dialog opens ("key=value;..."), else a new core;
//   does(steps)   what the user does (see act()), answering Yes unless answering(No);
//   sees(looks)   what the user then sees: "name look;..." (see Session::see);
//   boxes(shown)  the message boxes that came up: "title: text|...", "...*" matching a start.
struct Case
{
    explicit Case(const QString &name = QString()) : name(name) {}
    Case &does(const QString &steps) { return set(&Case::steps, steps); }
    Case &sees(const QString &looks) { return set(&Case::looks, looks); }
    Case &boxes(const QString &shown) { return set(&Case::shown, shown); }
    Case &on(const QString &device) { return set(&Case::device, device); }
    Case &given(const QString &setup) { return set(&Case::setup, setup); }
    Case &saved(const QString &record) { return set(&Case::record, record); }
    Case &answering(QMessageBox::StandardButton button)
    {
        answer = button;
        return *this;
    }

    QString name, steps, looks, shown, setup, record, device = "DVA-1-C2I1";
    QMessageBox::StandardButton answer = QMessageBox::Yes;

private:
    Case &set(QString Case::*field, const QString &value)
    {
        this->*field = value;
        return *this;
    }
};

// A project on the case's device in a scratch folder holding what the case
// gives, a dialog for a new core or opened from the saved record, and a user
// who answers message boxes as the case says.
struct Session
{
    explicit Session(const Case &c = Case())
        : device(Core::IdeCore::deviceDataBase()->findDevice(c.device))
    {
        registry()->reset();
        registry()->setDevice(device);
        registry()->setWorkingDir(work.path());
        for (const QString &step : split(c.setup))
            prepare(split(step, ':'));
        user.setAnswer(c.answer);
        user.start();
        d = std::make_unique<cpridlg>(IPCore::processIPInfoSpec(CPRI_PACKAGE_DIR "/cpri.ipspec"),
                                      &record, nullptr);
        if (c.record.isEmpty())
            d->setCreating("cpri_0", device);
        else
            opened = d->setOpening(parse(c.record));
    }

    void prepare(const QStringList &s)
    {
        if (s[0] == "pll")
            QVERIFY(registry()->enablePll(s[1], s[2].toDouble()));
        else if (s[0] == "ref")
            QVERIFY(registry()->fixReference(s[1], s[2].toDouble(), s[3].toInt()));
        else if (s[0] == "data")
            registry()->setData(s[1], s[2].toInt());
        else if (s[0] == "folder")
            QDir(work.path()).mkpath("cpri_0");
        else if (s[0] == "nodir")
            registry()->setWorkingDir(QCoreApplication::applicationFilePath());
        else
            for (const QString &lane : registry()->notOccupiedLanes())
                registry()->occupyLane(lane);
    }

    // The message boxes seen, as "title: text".
    QStringList seen() const
    {
        QStringList list;
        for (const CpriHost::ModalDriver::SeenBox &b : user.seenBoxes())
            list << b.title + ": " + b.text;
        return list;
    }

    void act(const QString &steps) { ::act(d.get(), steps); }

    // What the user sees of a widget (see look()), of a group of boxes
    // ("rates", "classes", a mark each: "+" free, "-" disabled, "*" checked,
    // "#" checked but disabled), of the "figure" (see PortGroups),
    // the registry's "shared" values and the fixed frequency of the chosen
    // source ("sourceMHz"), a "record:<key>", whether the dialog was
    // "opened" or "accepted", and of the dialog's state ("biasFlag",
    // "freeLanes", the "biasLines" given to the generator).
    QString see(const QString &name)
    {
        QString s;
        if (name == "rates" || name == "classes") {
            for (const QString &box : name == "rates" ? Rates : Classes) {
                auto *b = w<QAbstractButton>(d.get(), box);
                s += b->isChecked() ? (b->isEnabled() ? '*' : '#') : (b->isEnabled() ? '+' : '-');
            }
        } else if (name == "figure") {
            s = figure(*d);
        } else if (name == "shared") {
            s = show(registry()->globalData()).join('|');
        } else if (name.startsWith("record:")) {
            s = record.value(name.mid(7), "absent").toString();
        } else if (name == "accepted" || name == "opened") {
            s = (name == "opened" ? opened : d->result() == QDialog::Accepted) ? "yes" : "no";
        } else if (name == "sourceMHz") {
            const QString source = w<QComboBox>(d.get(), "refClkSource")->currentText();
            s = QString::number(registry()->getFreqByRefsrc(source));
        } else if (name == "biasFlag") {
            s = QString::number(Probe{d.get()}.biasFlag());
        } else if (name == "freeLanes") {
            const Probe probe{d.get()};
            s = probe.freeLanes().join('|') + QString(" (%1)").arg(probe.freeLaneCount());
        } else if (name == "route") { // what Calculate asked the registry, in order
            const QRegularExpression asked("^(FormString|checkAccess|checkRoute|resetLane)");
            s = registry()->callLog().filter(asked).join(' ');
        } else if (name == "biasLines") {
            s = Probe{d.get()}.settings().filter("_rx_eq_bias").join('|');
        } else {
            s = look(w(d.get(), name)).replace(work.path(), "~");
        }
        return name + ' ' + s;
    }

    QTemporaryDir work;
    DEV::DeviceArg device;
    Record record;
    CpriHost::ModalDriver user;
    std::unique_ptr<cpridlg> d;
    bool opened = true;
};

// Runs a case; every route it tried is freed again.
inline void check(const Case &c)
{
    Session s(c);
    s.act(c.steps);
    QStringList looks;
    for (const QString &entry : split(c.looks))
        looks << s.see(entry.section(' ', 0, 0));
    QCOMPARE(looks, split(c.looks));
    QStringList seen = s.seen(), boxes = split(c.shown, '|');
    for (int i = 0; i < qMin(seen.size(), boxes.size()); ++i)
        if (boxes[i].endsWith('*'))
            seen[i] = seen[i].left(boxes[i].size() - 1) + '*';
    QCOMPARE(seen, boxes);
    QVERIFY(registry()->pendingRoutes().isEmpty());
}

// One test row per case of a table, under the case's name.
template<size_t N>
void rows(const Case (&table)[N])
{
    QTest::addColumn<int>("row");
    for (size_t i = 0; i < N; ++i)
        QTest::newRow(qPrintable(table[i].name)) << int(i);
}

template<size_t N>
void check(const Case (&table)[N])
{
    QFETCH(int, row);
    check(table[row]);
}

// The texts the dialog shows, as its users read them.
namespace Msg {
inline const QString RefClock =
    "Failure: The Expected Reference Clock Pin can not be connected to the Expected PLL";
inline const QString C0 = "Warning: C0 must be greater than 20.";
inline const QString Succeed = "Succeed: Succeed";
inline QString bias(const QString &otherLanes, int value)
{
    return QString("Question: %1 BIAS will also be changed to %2, whether to accept or not? ")
        .arg(otherLanes)
        .arg(value);
}
} // namespace Msg
