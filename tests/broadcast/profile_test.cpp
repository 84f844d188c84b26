#include <gtest/gtest.h>

#include "broadcast/profile.h"

namespace tavora {
namespace {

// The text carries every field, so the same text back means the same profile.
TEST(Profile, EveryInstalledProfileAndAStreamedOneReadBackAsWritten) {
    auto profiles = StandardProfiles();
    Profile streamed = profiles[1].second;
    streamed.stream =
        StreamTarget{"127.0.0.1", 8123, "/air", "source", "pw", "Tavora FM", "Pop", true};
    profiles.emplace_back("streamed", streamed);
    for (const auto& [name, written] : profiles) {
        const ProfileRead read = ParseProfile(ProfileText(written));
        ASSERT_TRUE(read.profile) << name << ": " << read.error;
        EXPECT_EQ(ProfileText(*read.profile), ProfileText(written)) << name;
        EXPECT_EQ(read.profile->stream.has_value(), name == "streamed") << name;
    }
}

TEST(Profile, ABadProfileSaysWhatIsWrongWithIt) {
    const std::pair<const char*, const char*> cases[] = {
        {"", "the profile is empty"},
        {"# only a comment\n", "the profile is empty"},
        {"codec = mp3\nfile = c:\\a.asf\nloudness = 3\n", "line 3: unknown key \"loudness\""},
        {"codec = aac\n", "line 1: unknown codec \"aac\""},
        {"codec = mp3\nbitrate = fast\n", "line 2: bitrate must be a number from 6 to 512"},
        {"codec = mp3\nchannels = 6\n", "line 2: channels must be a number from 1 to 2"},
        {"codec mp3\n", "line 1: no \"=\""},
        {"bitrate = 64\nfile = c:\\a.asf\n", "the profile names no codec"},
        {"codec = mp3\n", "the profile names no file"},
        {"codec = mp3\nfile = c:\\a\nicecast_port = 8000\n",
         "icecast settings without icecast_host"},
        {"codec = wma\nfile = c:\\a\nicecast_host = h\n",
         "an Icecast stream takes mp3, vorbis or opus"},
        {"codec = mp3\nicecast_mount = air\n", "line 2: icecast_mount must start with /"},
    };
    for (const auto& [text, error] : cases) {
        const ProfileRead read = ParseProfile(text);
        EXPECT_FALSE(read.profile) << text;
        EXPECT_EQ(read.error, error) << text;
    }
}

}  // namespace
}  // namespace tavora
