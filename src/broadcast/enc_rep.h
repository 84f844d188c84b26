#pragma once

#include <array>
#include <functional>
#include <memory>
#include <string>

#include "broadcast/encoder.h"
#include "core/forms/form.h"
#include "core/services.h"
#include "platform/event_loop.h"

namespace tavora {

// The recorder window: starts the encoder at a quality chosen by a button, shows
// what it does, and when it stops names the recording and offers it to the library.
class EncRep : public Form {
  public:
    static constexpr long kGreen = 0xFF00;
    static constexpr long kRed = 255;
    static constexpr long kButtonFace = 0x8000000F;
    static constexpr int kQualities = 5;

    // `viewer` is the players' window: recording must start before it shows.
    EncRep(const Services& services, const Form& viewer, EncoderFactory encoders);

    void Form_Load();
    void Form_Unload();

    // A start button: 0 to 4 the fixed qualities in the order of the window.
    void Start_Quality(int quality);
    void Start_Click();  // "Custom"
    // Starts with a profile chosen elsewhere (the Custom dialog, the command line).
    bool Start_Profile(const std::string& native_profile);
    void Stop_Click();
    void Timer1_Timer();
    void UpDown1_Change();
    void DoReport();
    void V_see();

    // The routine that enters a recording in the library; while it is missing the
    // stop ends with the saved file.
    std::function<void(const std::string& file)> Asf_Add;

    Encoder* Enc_Obj() { return enc_obj_.get(); }
    // What airs now, for the stream; the station sets it at each hand-over.
    AirTitle Air_Title;
    int Enc_Ok = 0;
    std::string Enc_Temp;
    std::unique_ptr<Timer> Timer1;

    Control& Start28 = add("Start28");
    Control& Command1 = add("Command1");
    Control& StartISDN = add("StartISDN");
    Control& StartLAN = add("StartLAN");
    Control& StartCDQ = add("StartCDQ");
    Control& Start = add("Start");
    Control& Stop = add("Stop");
    Control& Option1 = add("Option1");
    Control& Option2 = add("Option2");
    Control& Text1 = add_text("Text1");
    Control& UpDown1 = add("UpDown1");
    Control& Label2 = add("Label2");
    Control& Label3 = add("Label3");
    Control& Label4 = add("Label4");
    Control& Report = add_text("Report");
    Control& DoReportButton = add("DoReport");
    Control& Command2 = add("Command2");
    Control& Command3 = add("Command3");

  private:
    std::array<Control*, kQualities> buttons() {
        return {&Start28, &Command1, &StartISDN, &StartLAN, &StartCDQ};
    }
    void TQX_Live();
    bool create_object();
    void check_temp();
    bool save_take(const std::string& temp, const std::string& saved);
    void started(Control& button);
    void all_buttons_face();
    std::string native(const std::string& dos) const;

    const Services& services_;
    const Form& viewer_;
    EncoderFactory encoders_;
    std::unique_ptr<Encoder> enc_obj_;
};

}  // namespace tavora
