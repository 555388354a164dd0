// logsiftView.h - the view operations behind the four file types.
#ifndef UTIL_LOGSIFT_LOGSIFTVIEW_H
#define UTIL_LOGSIFT_LOGSIFTVIEW_H

#include "util/logsift/rvConfig.h"

#include <string>

class VerifyFile;

unsigned VBF_View(const std::string& fileName, const RVConfig& cfg);
// Views a pool's live verify statistics; no command of this program reaches it.
unsigned VBF_View(const std::string& poolName, const std::string& serverName, const RVConfig& cfg);
unsigned RXF_View(const std::string& fileName, const RVConfig& cfg);
unsigned VBF_ViewNewest(const std::string& poolName, const RVConfig& cfg);
unsigned RXF_ViewNewest(const std::string& poolName, const RVConfig& cfg);
void VBF_DisplayOptions(VerifyFile& vf, const RVConfig& cfg);
// An empty hook, kept for callers that link against it.
void LSFT_LetUserView();

// Newest-file search in the RAV directory.
bool IsARebuildLogFile(const std::string& poolName, const std::string& fileName,
                       unsigned long long* stamp);
bool IsAVerifyReportFile(const std::string& poolName, const std::string& fileName,
                         unsigned long long* stamp);
bool FindTheNewestFile(const std::string& directory, const std::string& poolName,
                       std::string& path, bool rebuildLog);

#endif
