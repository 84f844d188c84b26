#include "station/manual_pages.h"

#include <fstream>

namespace tavora {

namespace {

constexpr const char* kQuickHelp = R"(<html>
<head><title>Tavora Music System: Quick Help</title></head>
<body>
<h1>Tavora Music System</h1>
<p>An unattended music station: it picks what plays next from your library by
its programming rules, mixes each song into the next, and keeps a play log.</p>

<h2>Running the station</h2>
<ol>
<li>Start <b>Tavora</b> from the desktop menu, or run <code>tavora</code>.
The first start makes the station folder with a demo library.</li>
<li>Press <b>Run</b> on the request list, or choose
<b>File, Run Juke Box</b>. The station picks six recordings and starts the
first set.</li>
<li>The <b>Now Playing</b> window shows the twelve cue slots, the time left
of each player and the mix arrows. <b>Skip/Eject</b> moves to the next song;
<b>Ply7</b> turns the seventh player on or off.</li>
<li><b>File, Pause</b> pauses the players after a question; choose it again
to go on.</li>
<li><b>File, Exit</b> saves the session settings and stops the station.</li>
</ol>

<h2>The request list</h2>
<p>Touch a title to request it: the number beside it counts the open
requests, and the station plays it at one of the next loads. The letter
buttons jump to the titles (or artists) starting with that letter; the sort
buttons change the list. <b>Hold Request</b> holds every request until it is
pressed again. <b>Break</b> stops the music after the song on air and
<b>Resume</b> starts it again.</p>

<h2>Settings</h2>
<p><b>Options, Setup</b> holds the active library, the time of the new day
and the drive table. <b>Music Category Setup</b> and <b>Category
Override</b> set the weight of each category.</p>

<h2>Files</h2>
<p>The library is <code>qx1.mdb</code> and the settings <code>Setup.mdb</code>
in the station folder, both SQLite files. The play log of each day is
<code>qxl&lt;month&gt;&lt;day&gt;.log</code>.</p>
</body>
</html>
)";

constexpr const char* kLegalText =
    "Tavora Music System\r\n"
    "\r\n"
    "This program is provided as is, without warranty of any kind, express or\r\n"
    "implied. In no event shall the authors be liable for any claim, damages or\r\n"
    "other liability arising from the use of the program.\r\n"
    "\r\n"
    "Public performance of recorded music may need a licence from the\r\n"
    "collecting societies of your country. The operator of the station is\r\n"
    "responsible for holding the licences that its use requires.\r\n"
    "\r\n"
    "The program uses SQLite (public domain), FFmpeg (LGPL 2.1 or later),\r\n"
    "PortAudio (MIT licence) and Qt (LGPL 3).\r\n";

std::string write(const std::filesystem::path& file, const char* text) {
    std::ofstream out(file, std::ios::binary);
    out << text;
    out.close();
    return out ? std::string() : "cannot write the file";
}

}  // namespace

std::string write_quick_help(const std::filesystem::path& file) {
    return write(file, kQuickHelp);
}

std::string write_legal_text(const std::filesystem::path& file) {
    return write(file, kLegalText);
}

}  // namespace tavora
