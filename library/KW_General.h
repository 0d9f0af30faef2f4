#pragma once

#include "platform/LibraryPart.h"

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
    /// Title of the open project: the last component of its file's path, with extension, at most its first
    /// 255 units; empty for a project that has not been saved yet. `untitled` (may be null) marks such a
    /// project; it is also true if the host does not answer. Whether the host answered.
    static bool ArchiCADProjectTitle(KW_String& title, bool* untitled);

    /// Whether the current rendering engine's menu name contains `partOfName`, in any case: 1 it does, 0 it
    /// does not, -1 the host does not know.
    static short CheckCurrentRenderingEngine(const KW_String& partOfName);
    /// Makes the first engine whose menu name contains `partOfName`, in any case, the current one. Whether it
    /// is now, or was already.
    static bool SetRenderingEngine(const KW_String& partOfName);

    /// Shows the folder in the desktop's file manager. False when there is no such folder.
    static bool OpenFolderByLoc(KW_Location& folder);
    /// Opens the document in the program that the desktop associates with it. False when there is no such
    /// file.
    static bool LaunchDocByLoc(const KW_Location& file);
    /// The same for a path whose text, in Encoding_System, is what the file system knows it by.
    static bool LaunchDocByPath(const KW_String& path);
    /// Opens the web address, http or https and at most 255 bytes in Encoding_System. Whether the system
    /// accepted it.
    static bool LaunchURLByPath(const KW_String& address);

    /// Index of a library part by its name, with or without extension; -1 when it stays missing although the
    /// suite's library was loaded (unless one of its name is loaded already) and the user was asked for a
    /// folder. With `showAlert` the user then sees `message`, or the standard text if it is empty or
    /// null. Whether the index is that of a part.
    static bool GetLPIdxFullLib(const KW_String& name, long& index, bool showAlert, const KW_String& message,
                                API_LibTypeID type);
    /// The same, but loads the suite's library without looking at the loaded libraries first.
    static bool GetLPIdxFullLibNoCheckLibs(const KW_String& name, long& index, bool showAlert,
                                           const KW_String& message, API_LibTypeID type);

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

/// Hands the path, in Encoding_System and with "/" for every ":", to the program that the desktop associates
/// with it, and returns when the desktop's opener has finished. Whether there was such a program is not
/// reported.
void KW_General_LaunchDoc(const KW_Location& path);
