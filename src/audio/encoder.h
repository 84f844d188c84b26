#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>

namespace tavora::audio {

// Writes interleaved float samples into a file of one of the formats the
// engine decodes, told by an extension (".mp3", ".ogg", ".flac", ".m4a",
// ".opus", ".wav"), whatever the file's own name. One thread at a time.
class Encoder {
  public:
    Encoder();
    ~Encoder();
    Encoder(const Encoder&) = delete;
    Encoder& operator=(const Encoder&) = delete;

    // Empty on success, else why. The encoder may want another rate than
    // `rate`: sample_rate() tells the one to write in.
    std::string open(const std::filesystem::path& file, const std::string& extension, int rate,
                     int channels);
    int sample_rate() const;
    std::string write(const float* samples, std::size_t frames);
    // Flushes and closes the file; the file is whole only when this says so.
    std::string finish();

    static bool knows(const std::string& extension);

  private:
    struct Output;
    std::string drain(bool flush);
    std::unique_ptr<Output> out_;
};

}  // namespace tavora::audio
