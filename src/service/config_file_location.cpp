// Which configuration file the daemon and the SLP library use.
#include <cstdlib>

#include "foundation/text.h"
#include "platform/file_system.h"
#include "service/folders.h"
#include "service/service_impl.h"

namespace kelsd {

namespace {

constexpr const char* kValidate = "kelsd::CKelSLPServiceImpl::ValidateSLPEnvironmentConfigFile";

}  // namespace

std::string CKelSLPServiceImpl::GetOpenSLPConfigVariable(bool& found) {
  const char* value = std::getenv("OpenSLPConfig");
  if (value == nullptr) {
    return {};
  }
  found = true;
  return value;
}

std::string CKelSLPServiceImpl::GetDefaultEnvConfigFileName() {
  return m_platform.folders.CommonData().value_or(platform::FallbackCommonData()) +
         platform::EnvironmentConfigFileIn();
}

std::string CKelSLPServiceImpl::GetSLPConfigFileName() {
  std::string name;
  if (GetStringProperty(name, CKelSLPConfig::PROP_OPENSLPCONFIGFILE).IsOk()) {
    return name;
  }
  return m_platform.folders.System().value_or(platform::FallbackSystem()) + platform::MainConfigFileIn();
}

SResult CKelSLPServiceImpl::GetSLPEnvConfigFileName(std::string& fileName) {
  bool found = false;
  const std::string value = GetOpenSLPConfigVariable(found);
  if (!found) {
    return {SResult::ERR_ENV_NOT_SET,
            "Create an environment variable with name 'OpenSLPConfig' that contains the path to the SLP "
            "configuration file e.g. '" +
                GetDefaultEnvConfigFileName() + "'.",
            "kelsd::CKelSLPServiceImpl::GetSLPEnvConfigFileName"};
  }
  fileName = Trim(value);
  return {SResult::ERR_SUCCESS};
}

SResult CKelSLPServiceImpl::CreateMissingConfigFile(const std::string& fileName) {
  if (platform::FileExists(fileName)) {
    return {SResult::ERR_SUCCESS};
  }
  const std::string folder = FolderOf(fileName);
  if (!CreateMissingFolders(folder)) {
    return {SResult::ERR_CONF_DIR_CREATE, "Cannot create 'OpenSLPConfig' directory '" + folder + "'.",
            kValidate};
  }
  if (!platform::CreateEmptyFile(fileName)) {
    return {SResult::ERR_CONF_CREATE, "Cannot create 'OpenSLPConfig' file '" + fileName + "'.", kValidate};
  }
  return {SResult::ERR_SUCCESS};
}

// 1. The variable names the file.
// 2. A file that doesn't exist is created empty, with its folders.
// 3. The SLP library must have taken the same file from the variable,
// 4. otherwise the variable was set or changed after the library had loaded its properties.
SResult CKelSLPServiceImpl::ValidateSLPEnvironmentConfigFile() {
  std::string file_name;
  if (const SResult result = GetSLPEnvConfigFileName(file_name); result.IsNotOk()) {
    return result.PrependErrorDebug(kValidate, " ");
  }
  if (SResult result = CreateMissingConfigFile(file_name); result.IsNotOk()) {
    return result;
  }
  std::string used;
  if (GetStringProperty(used, CKelSLPConfig::PROP_ENVCONFIGFILE).IsOk() && EqualsNoCase(used, file_name)) {
    return {SResult::ERR_SUCCESS};
  }
  return {SResult::ERR_RESTART_REQUIRED, "", kValidate};
}

// 1. Validate.
// 2. When the SLP library uses another file, initialise it again, once: it reads the variable anew.
// 3. Validate again; when the initialisation failed, tell of both.
SResult CKelSLPServiceImpl::ValidateOrReInitialize(const std::function<SResult()>& reinitialize) {
  SResult validated = ValidateSLPEnvironmentConfigFile();
  if (validated != SResult::ERR_RESTART_REQUIRED) {
    return validated;
  }
  const SResult initialized = reinitialize();
  if (initialized.IsOk()) {
    return ValidateSLPEnvironmentConfigFile();
  }
  return {validated.GetErrorCode(),
          validated.GetErrorDetail() + " Re-initialization failed: " + initialized.GetErrorDetail(),
          validated.GetErrorDebug() + " " + initialized.GetErrorDebug()};
}

}  // namespace kelsd
