#include "platform/dialogs.h"

#include <utility>

namespace tavora {

Answer Dialogs::MsgBox(std::string text, Buttons buttons, std::string title, Icon icon,
                       int default_button) {
    DialogRequest r;
    r.kind = DialogKind::Message;
    r.text = std::move(text);
    r.buttons = buttons;
    r.title = std::move(title);
    r.icon = icon;
    r.default_button = default_button;
    return Ask(r).answer;
}

std::string Dialogs::InputBox(std::string prompt, std::string title, std::string default_text) {
    DialogRequest r;
    r.kind = DialogKind::Input;
    r.text = std::move(prompt);
    r.title = std::move(title);
    r.buttons = Buttons::OKCancel;
    r.default_text = std::move(default_text);
    return Ask(r).text;
}

namespace {

std::string AskFile(Dialogs& dialogs, DialogKind kind, std::string title, std::string filter,
                    std::string folder, std::string file_name) {
    DialogRequest r;
    r.kind = kind;
    r.title = std::move(title);
    r.buttons = Buttons::OKCancel;
    r.filter = std::move(filter);
    r.folder = std::move(folder);
    r.default_text = std::move(file_name);
    return dialogs.Ask(r).text;
}

bool HasFolder(const std::string& name) {
    return name.find_first_of("\\/:") != std::string::npos;
}

const char* KindName(DialogKind kind) {
    switch (kind) {
        case DialogKind::Message:
            return "MsgBox";
        case DialogKind::Input:
            return "InputBox";
        case DialogKind::Open:
            return "OpenFile";
        case DialogKind::Save:
            return "SaveFile";
    }
    return "Dialog";
}

std::string Quoted(const std::string& s) {
    return "\"" + s + "\"";
}

}  // namespace

std::string Dialogs::OpenFile(std::string title, std::string filter, std::string folder,
                              std::string file_name) {
    return AskFile(*this, DialogKind::Open, std::move(title), std::move(filter), std::move(folder),
                   std::move(file_name));
}

std::string Dialogs::SaveFile(std::string title, std::string filter, std::string folder,
                              std::string file_name) {
    return AskFile(*this, DialogKind::Save, std::move(title), std::move(filter), std::move(folder),
                   std::move(file_name));
}

std::vector<Answer> ButtonsOf(Buttons buttons) {
    switch (buttons) {
        case Buttons::OKOnly:
            return {Answer::OK};
        case Buttons::OKCancel:
            return {Answer::OK, Answer::Cancel};
        case Buttons::AbortRetryIgnore:
            return {Answer::Abort, Answer::Retry, Answer::Ignore};
        case Buttons::YesNoCancel:
            return {Answer::Yes, Answer::No, Answer::Cancel};
        case Buttons::YesNo:
            return {Answer::Yes, Answer::No};
        case Buttons::RetryCancel:
            return {Answer::Retry, Answer::Cancel};
    }
    return {Answer::OK};
}

const char* AnswerName(Answer answer) {
    switch (answer) {
        case Answer::OK:
            return "OK";
        case Answer::Cancel:
            return "Cancel";
        case Answer::Abort:
            return "Abort";
        case Answer::Retry:
            return "Retry";
        case Answer::Ignore:
            return "Ignore";
        case Answer::Yes:
            return "Yes";
        case Answer::No:
            return "No";
    }
    return "?";
}

DialogReply DefaultReply(const DialogRequest& request) {
    if (request.kind == DialogKind::Message) {
        const auto set = ButtonsOf(request.buttons);
        const int i = request.default_button;
        // A default past the end of the set falls back to the first button.
        return {i >= 1 && i <= static_cast<int>(set.size()) ? set[i - 1] : set.front(), {}};
    }
    std::string text = request.default_text;
    if (request.kind != DialogKind::Input && !text.empty() && !request.folder.empty() &&
        !HasFolder(text)) {
        const char last = request.folder.back();
        text = request.folder + (last == '\\' || last == '/' ? "" : "\\") + text;
    }
    return {Answer::OK, std::move(text)};
}

std::string DescribeDialog(const DialogRequest& request, const DialogReply& reply) {
    std::string line = std::string(KindName(request.kind)) + " " + Quoted(request.title) + ": ";
    if (request.kind == DialogKind::Message) {
        line += Quoted(request.text) + " [";
        const auto set = ButtonsOf(request.buttons);
        for (std::size_t i = 0; i < set.size(); ++i) {
            line += (i ? "/" : "") + std::string(AnswerName(set[i]));
        }
        return line + "] -> " + AnswerName(reply.answer);
    }
    if (request.kind == DialogKind::Input) {
        line += Quoted(request.text) + " default " + Quoted(request.default_text);
    } else {
        line += "in " + Quoted(request.folder) + " filter " + Quoted(request.filter) + " name " +
                Quoted(request.default_text);
    }
    return line + " -> " + AnswerName(reply.answer) + " " + Quoted(reply.text);
}

}  // namespace tavora
