#pragma once

class KW_Location;
class KW_String;

/// What a download reports (KW_General::URLDownload).
enum KW_URL_Message : int {
    KW_URL_Opened = 0,    ///< the connection to the server is open; answering 1 cancels the download
    KW_URL_Failed = 1,    ///< the download failed; the last message
    KW_URL_Progress = 2,  ///< a chunk of data was received and written
    KW_URL_Finished = 3,  ///< the data has ended, the file is complete and closed; the last message
};

/// Progress callback of a download. `value` is 0.5 with KW_URL_Progress, 0.0 otherwise; `userData` is the
/// caller's pointer. The result is read for KW_URL_Opened only.
using KW_URL_CallBack = int (*)(KW_URL_Message message, double value, void* userData);

/// System and host utilities. Host main thread only; failures are results, nothing is shown to the user.
class KW_General {
public:
    /// Fetches `url` over HTTP into the file `destination`: created when missing, its content replaced.
    /// Returns at once; the transfer runs on the main run loop, for 60 seconds at most.
    ///
    /// False when it could not be started; the callback is then never called. Otherwise it gets
    /// KW_URL_Opened, any number of KW_URL_Progress, and one of KW_URL_Finished and KW_URL_Failed;
    /// KW_URL_Failed alone when the connection never opened, and nothing more after answering 1 to
    /// KW_URL_Opened: the destination is then not touched. After KW_URL_Failed it holds what had been
    /// received. Every body that the server sends counts, that of an error too. `callBack` may be null.
    static bool URLDownload(const KW_String& url, const KW_Location& destination, KW_URL_CallBack callBack,
                            void* userData);
};
