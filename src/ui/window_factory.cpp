#include "ui/window_factory.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>
#include <functional>
#include <map>

#include "core/forms/form.h"
#include "ui/binder.h"
#include "ui_ad_wiz.h"
#include "ui_advschedule.h"
#include "ui_enc_rep.h"
#include "ui_form1.h"
#include "ui_form2.h"
#include "ui_frm_about.h"
#include "ui_frm_browser.h"
#include "ui_frm_loding.h"
#include "ui_frm_on_air.h"
#include "ui_frm_schedule1.h"
#include "ui_frm_setup.h"
#include "ui_frm_system_info.h"
#include "ui_frm_tavora_db.h"
#include "ui_frm_type_lookup.h"
#include "ui_frm_viewer.h"
#include "ui_mailfrm.h"
#include "ui_mp_fm.h"
#include "ui_request.h"

namespace tavora::ui {

namespace {

template <class Layout>
void Apply(QWidget& widget) {
    Layout layout;
    layout.setupUi(&widget);
}

using Setup = std::function<void(QWidget&)>;

// One line per window that has a layout.
const std::map<std::string, Setup>& Layouts() {
    static const std::map<std::string, Setup> layouts = {
        {"frmViewer", Apply<Ui::frmViewer>},
        {"MpFm", Apply<Ui::MpFm>},
        {"FrmOnAir", Apply<Ui::FrmOnAir>},
        {"Request", Apply<Ui::Request>},
        {"frmLoding", Apply<Ui::frmLoding>},
        {"frmAbout", Apply<Ui::frmAbout>},
        {"frmBrowser", Apply<Ui::frmBrowser>},
        {"frmSystemInfo", Apply<Ui::frmSystemInfo>},
        {"frmSetup", Apply<Ui::frmSetup>},
        {"Mailfrm", Apply<Ui::Mailfrm>},
        {"Form2", Apply<Ui::Form2>},
        {"frmTypeLookup", Apply<Ui::frmTypeLookup>},
        {"frmTavoraDb", Apply<Ui::frmTavoraDb>},
        {"AdWiz", Apply<Ui::AdWiz>},
        {"EncRep", Apply<Ui::EncRep>},
        {"frmSchedule1", Apply<Ui::frmSchedule1>},
        {"Advschedule", Apply<Ui::Advschedule>},
        {"Form1", Apply<Ui::Form1>},
    };
    return layouts;
}

}  // namespace

bool SetUpLayout(const std::string& form_name, QWidget& widget) {
    const auto& layouts = Layouts();
    // The seven player windows share one layout.
    const std::string key = form_name.rfind("MpFm", 0) == 0 ? "MpFm" : form_name;
    const auto it = layouts.find(key);
    if (it == layouts.end()) return false;
    it->second(widget);
    return true;
}

void SetUpPlainLayout(const Form& form, QWidget& widget) {
    auto* outer = new QVBoxLayout(&widget);
    auto* scroll = new QScrollArea(&widget);
    scroll->setWidgetResizable(true);
    auto* inner = new QWidget(scroll);
    auto* rows = new QFormLayout(inner);
    for (const auto& entry : form.controls()) {
        const Control& c = *entry.control;
        const QString name = QString::fromStdString(WidgetName(c.Name, c.Index));
        QWidget* made = nullptr;
        switch (entry.kind) {
            case Form::Kind::TextBox:
                made = new QLineEdit(inner);
                break;
            case Form::Kind::CheckBox:
                made = new QCheckBox(inner);
                break;
            case Form::Kind::List:
                made = new QComboBox(inner);
                break;
            case Form::Kind::Plain:
                if (form.handles(c.Name, "Click")) {
                    made = new QPushButton(inner);
                } else {
                    made = new QLabel(inner);
                }
                break;
        }
        made->setObjectName(name);
        if (entry.kind == Form::Kind::TextBox || entry.kind == Form::Kind::List) {
            rows->addRow(name, made);
        } else {
            rows->addRow(made);
        }
    }
    scroll->setWidget(inner);
    outer->addWidget(scroll);
    widget.resize(480, 520);
}

}  // namespace tavora::ui
