#pragma once

#include <QString>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "DisplayName.h"

namespace kelvo {

/// Words of an amp model. Their meaning is the device's business.
inline constexpr std::size_t kAmpWordCount = 512;

/// The model words of the last file that AMPFile::OpenFile accepted, which the AMP transfer sends. Not guarded here:
/// the receive thread reads them while a transfer runs, so whoever writes holds the transfer's mutex.
extern std::array<std::uint32_t, kAmpWordCount> AmpPiontBuff;

/// One amp model file: 512 little-endian words, their sum modulo 2^32, anything, and "2.0" as the last three bytes.
///
/// A file that ends before its checksum is accepted when the words it has sum to 0. One thread at a time.
class AMPFile {
public:
    AMPFile() { CharFileName.fill(' '); }

    /// readModel, and on success GetBuffer into AmpPiontBuff; a failure leaves AmpPiontBuff. The caller holds what
    /// guards AmpPiontBuff; where the file's reading must not happen under that lock, call these two instead.
    [[nodiscard]] bool OpenFile(const QString& path);

    /// Reads and checks a file: fills ampSwBuffer and CharFileName, touches nothing outside this object. Returns false
    /// for what readWholeFile does not read, a wrong checksum or a wrong trailer. The words of ampSwBuffer that a file
    /// is too short for keep their values; those it holds are overwritten even when it is then refused. A failure
    /// leaves CharFileName.
    [[nodiscard]] bool readModel(const QString& path);

    /// Copies ampSwBuffer.
    void GetBuffer(std::span<std::uint32_t, kAmpWordCount> words) const;

    std::array<std::uint32_t, kAmpWordCount> ampSwBuffer{};
    CharName CharFileName;           ///< the slot's name; 20 spaces before the first file
    bool IsFileOpenSuccess = false;  ///< the last file was accepted
    QString wholeName;               ///< what CharFileName was made of
    QString refusal;                 ///< why the last file was not, in printable words for the user; else empty
    std::uint32_t FileSize = 0;      ///< length in bytes of the last file that could be read
    std::size_t wordsRead = 0;       ///< of ampSwBuffer, from the last file that could be read
    std::uint32_t checksum = 0;      ///< of the last file that could be read; 0 where that ends before it
    bool hasChecksum = false;        ///< that file is long enough for one

private:
    void scanWords(std::span<const std::uint8_t> file);
    [[nodiscard]] QString verdict(std::span<const std::uint8_t> file) const;
};

}  // namespace kelvo
