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

    /// Closes the open file and opens another. Returns false, with no file open and CharFileNane unchanged, for a file
    /// that readWholeFile does not read and for a wave file that breaks a rule of findWave. GetIRDataBuffer checks rate
    /// and depth.
    [[nodiscard]] bool OpenFilePath(const QString& path);

    /// Converts the open file to the device's points, see convertWave and unpackInternal. Returns false and does not
    /// change `points` when no file is open or the rate or depth is not supported.
    [[nodiscard]] bool GetIRDataBuffer(IRPoints points) const;

    /// The slot's name; 20 spaces before the first file. A name of kInternalNameLength bytes has no NUL after it.
    NameBuffer CharFileNane;
    bool isInteralIR = false;        ///< the last file had the internal magic
    bool IsFileOpenSuccess = false;  ///< a file is open
    FileContent pFileBuff;           ///< the complete file, empty when none is open
    std::uint32_t FileSize = 0;      ///< length in bytes of the last file that could be read
    std::uint32_t PointSize = 0;     ///< sample frames that the data chunk declares; WAVE only
    ByteView pIRData;                ///< the open file from its first sample on
    RIFF_HEADER riffheader;          ///< WAVE only
    FMT_BLOCK fmt_block;             ///< WAVE only
    DATA_BLOCK data_block;           ///< WAVE only; pIRData views its samples

private:
    bool openInternal(ByteView file);
    [[nodiscard]] bool openWave(ByteView file, const QString& path);
};

}  // namespace kelvo
