#pragma once

#include <QString>
#include <cstdint>

#include "DisplayName.h"
#include "IRConversion.h"
#include "IRLayout.h"
#include "WholeFile.h"

namespace kelvo {

/// One impulse-response file: RIFF/WAVE, or the internal format that begins with "TavikIR". One thread at a time.
class RVIRFile {
public:
    RVIRFile() { CharFileNane.fill(' '); }

    /// Closes the file that is open and opens another. Returns false, with no file open, for what readWholeFile does
    /// not read and for a wave file that breaks a rule of findWave. Rate and depth are only judged by GetIRDataBuffer.
    /// A failure leaves CharFileNane.
    [[nodiscard]] bool OpenFilePath(const QString& path);

    /// Writes the device's form of the open file, see convertWave and unpackInternal. Returns false and leaves `points`
    /// when no file is open or the rate or depth is not supported.
    [[nodiscard]] bool GetIRDataBuffer(IRPoints points) const;

    /// The slot's name; 20 spaces before the first file. One that fills kInternalNameLength bytes has no NUL behind it.
    NameBuffer CharFileNane;
    bool isInteralIR = false;        ///< the last file had the internal magic
    bool IsFileOpenSuccess = false;  ///< a file is open
    FileContent pFileBuff;           ///< the whole file, empty when none is open
    std::uint32_t FileSize = 0;      ///< length in bytes of the last file that could be read
    std::uint32_t PointSize = 0;     ///< sample frames that the data chunk declares; WAVE only
    ByteView pIRData;                ///< the open file from its first sample on
    RIFF_HEADER riffheader;          ///< WAVE only
    FMT_BLOCK fmt_block;             ///< WAVE only
    DATA_BLOCK data_block;           ///< WAVE only; its samples are at pIRData

private:
    bool openInternal(ByteView file);
    [[nodiscard]] bool openWave(ByteView file, const QString& path);
};

}  // namespace kelvo
