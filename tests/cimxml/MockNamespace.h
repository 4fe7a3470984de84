// A GoogleMock double of the namespace, for tests in which the calls that
// the parser makes are themselves the behaviour. By default every call goes
// to a real in-memory namespace, so that the objects made are real ones.
#ifndef ORV_TESTS_CIMXML_MOCKNAMESPACE_H
#define ORV_TESTS_CIMXML_MOCKNAMESPACE_H

#include "core_api/CIMInterfaces.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace orvtest {

class TMockNamespace : public NVRNORV20::ICIMNamespace {
  using TClassPtr = boost::shared_ptr<NVRNORV20::ICIMClass>;
  using TDeclPtr = boost::shared_ptr<NVRNORV20::ICIMQualifierDecl>;
  using TInstancePtr = boost::shared_ptr<NVRNORV20::ICIMInstance>;
  using TOptions = NVRNORV20::TCIMOptions;

public:
  TMockNamespace() : real(NVRNORV20::CreateCIMNamespace("root/mock")) {
    using ::testing::_;
    using ::testing::Invoke;
    ON_CALL(*this, CreateClass(_, _, _))
        .WillByDefault(Invoke(real.get(), &NVRNORV20::ICIMNamespace::CreateClass));
    ON_CALL(*this, GetClass(_, _))
        .WillByDefault(Invoke(real.get(), &NVRNORV20::ICIMNamespace::GetClass));
    ON_CALL(*this, CreateQualifierDecl(_, _, _, _, _))
        .WillByDefault(Invoke(real.get(), &NVRNORV20::ICIMNamespace::CreateQualifierDecl));
    ON_CALL(*this, GetQualifierDecl(_, _))
        .WillByDefault(Invoke(real.get(), &NVRNORV20::ICIMNamespace::GetQualifierDecl));
  }

  MOCK_METHOD(const std::string &, GetName, (const TOptions &), (override));
  MOCK_METHOD(std::vector<TClassPtr>, GetClasses, (const TOptions &), (override));
  MOCK_METHOD(void, DeleteClass, (const std::string &, const TOptions &), (override));
  MOCK_METHOD(TClassPtr, CreateClass, (const std::string &, TClassPtr, const TOptions &),
              (override));
  MOCK_METHOD(TClassPtr, GetClass, (const std::string &, const TOptions &), (override));
  MOCK_METHOD(std::vector<TDeclPtr>, GetQualifierDecls, (const TOptions &), (override));
  MOCK_METHOD(void, DeleteQualifierDecl, (const std::string &, const TOptions &), (override));
  MOCK_METHOD(TDeclPtr, CreateQualifierDecl,
              (const std::string &, const NVRNORV20::TCIMValue &, std::uint32_t, std::uint32_t,
               const TOptions &),
              (override));
  MOCK_METHOD(TDeclPtr, GetQualifierDecl, (const std::string &, const TOptions &), (override));
  MOCK_METHOD(bool, HasClass, (const std::string &, const TOptions &), (override));
  MOCK_METHOD(std::vector<TInstancePtr>, GetInstances,
              (const std::string &, bool, const TOptions &), (override));
  MOCK_METHOD(TInstancePtr, GetInstance, (const NVRNORV20::TCIMReference &, const TOptions &),
              (override));
  MOCK_METHOD(void, DeleteInstance, (const NVRNORV20::TCIMReference &, const TOptions &),
              (override));
  MOCK_METHOD(std::vector<std::string>, GetSubclassNames,
              (const std::string &, bool, const TOptions &), (override));
  MOCK_METHOD(std::string, ToMOF, (const TOptions &), (override));

  /// The namespace that the default actions use.
  boost::shared_ptr<NVRNORV20::ICIMNamespace> real;
};

} // namespace orvtest

#endif
