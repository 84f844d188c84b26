#pragma once

#include <string>
#include <vector>

namespace tavora {

// Answers of a message box, numbered as the rules compare them.
enum class Answer { OK = 1, Cancel = 2, Abort = 3, Retry = 4, Ignore = 5, Yes = 6, No = 7 };

enum class Buttons {
    OKOnly = 0,
    OKCancel = 1,
    AbortRetryIgnore = 2,
    YesNoCancel = 3,
    YesNo = 4,
    RetryCancel = 5,
};

enum class Icon { None = 0, Critical = 16, Question = 32, Exclamation = 48, Information = 64 };

enum class DialogKind { Message, Input, Open, Save };

// Everything a dialog shows. Paths are in the stored DOS form
// ("c:\tavora"): a front end maps them to and from its own file system.
struct DialogRequest {
    DialogKind kind = DialogKind::Message;
    std::string title;
    std::string text;  // the message or the input prompt
    Buttons buttons = Buttons::OKOnly;
    Icon icon = Icon::None;
    int default_button = 1;    // 1-based within the button set
    std::string default_text;  // input default, or the file dialog's file name
    std::string filter;        // "Name|*.a;*.b|Name|*.c"
    std::string folder;        // where a file dialog starts
};

// `answer` is the button pressed; `text` the input or the chosen file, empty
// when the dialog was cancelled.
struct DialogReply {
    Answer answer = Answer::OK;
    std::string text;
};

// The one seam through which the rules talk to the operator.
class Dialogs {
  public:
    virtual ~Dialogs() = default;
    virtual DialogReply Ask(const DialogRequest& request) = 0;

    Answer MsgBox(std::string text, Buttons buttons = Buttons::OKOnly, std::string title = {},
                  Icon icon = Icon::None, int default_button = 1);
    // Cancel gives an empty text.
    std::string InputBox(std::string prompt, std::string title = {}, std::string default_text = {});
    // Cancel gives an empty name.
    std::string OpenFile(std::string title, std::string filter, std::string folder,
                         std::string file_name = {});
    std::string SaveFile(std::string title, std::string filter, std::string folder,
                         std::string file_name = {});
};

std::vector<Answer> ButtonsOf(Buttons buttons);
const char* AnswerName(Answer answer);

// What pressing Enter does: the default button, or OK with the default text
// (joined to the folder, for a file dialog given a bare name).
DialogReply DefaultReply(const DialogRequest& request);

// One line naming the dialog, its words and the reply, for logs and for
// messages of a failed test.
std::string DescribeDialog(const DialogRequest& request, const DialogReply& reply);

}  // namespace tavora
