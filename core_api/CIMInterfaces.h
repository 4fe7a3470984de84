// The object model's interfaces: namespaces, classes, instances, property
// and qualifier declarations, qualifiers, methods and parameters.
//
// Every operation takes an options map as its last argument. Those that read
// one say so: every ToMOF takes "FLAVORS" (boolean true) to write each
// qualifier's flavors where they differ from its declaration's, as a MOF
// compiler needs them to give the same flavors back. Names of classes, properties, methods,
// parameters and qualifiers are matched without regard to ASCII letter case
// and keep the case in which they were declared.
//
// The order of the virtual operations in each interface is part of the
// binary interface that the parser library is built against: new
// operations go at the end.
#ifndef ORV_CORE_API_CIMINTERFACES_H
#define ORV_CORE_API_CIMINTERFACES_H

#include "core_api/CIMValue.h"
#include "core_api/ORVExport.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <string>
#include <vector>

namespace NVRNORV20 {

class ICIMClass;
class ICIMInstance;
class ICIMMethod;
class ICIMNamespace;
class ICIMParameter;
class ICIMProperty;
class ICIMPropertyDecl;
class ICIMQualifier;
class ICIMQualifierDecl;

/// A qualifier declaration of a namespace.
class ORVCORE_API ICIMQualifierDecl {
public:
  /// Flavor bits, for declarations and qualifiers alike. The default flavor
  /// of a CIM-XML qualifier is overridable and to-subclass (3).
  enum EFlavor : std::uint32_t {
    kFlavorNone = 0,
    kFlavorOverridable = 0x1,
    kFlavorToSubclass = 0x2,
    kFlavorTranslatable = 0x4,
    kFlavorDefault = kFlavorOverridable | kFlavorToSubclass,
  };
  /// Scope bits: the kinds of element a qualifier may be applied to.
  enum EScope : std::uint32_t {
    kScopeClass = 0x01,
    kScopeAssociation = 0x02,
    kScopeIndication = 0x04,
    kScopeProperty = 0x08,
    kScopeReference = 0x10,
    kScopeMethod = 0x20,
    kScopeParameter = 0x40,
    kScopeAny = 0x7F,
  };

  virtual ~ICIMQualifierDecl();
  virtual const std::string &GetName(const TCIMOptions &options = TCIMOptions()) = 0;
  /// Completes the declaration. Committing twice throws kORVStatusAlreadyCommitted.
  virtual void Commit(const TCIMOptions &options = TCIMOptions()) = 0;
  virtual std::uint32_t GetScope(const TCIMOptions &options = TCIMOptions()) = 0;
  virtual std::uint32_t GetFlavor(const TCIMOptions &options = TCIMOptions()) = 0;
  virtual TCIMValue GetDefaultValue(const TCIMOptions &options = TCIMOptions()) = 0;
  /// The declared type, from the default value given at creation.
  virtual TCIMType GetType(const TCIMOptions &options = TCIMOptions()) = 0;
  virtual bool IsArray(const TCIMOptions &options = TCIMOptions()) = 0;
  /// The declared array size (0 for variable-size arrays and scalars).
  virtual unsigned int GetArraySize(const TCIMOptions &options = TCIMOptions()) = 0;
  virtual bool IsCommitted(const TCIMOptions &options = TCIMOptions()) = 0;
  /// "Qualifier Name : type = default, Scope(...), Flavor(...);"
  virtual std::string ToMOF(const TCIMOptions &options = TCIMOptions()) = 0;
};

/// A qualifier applied to a class, property, method or parameter.
class ORVCORE_API ICIMQualifier {
public:
  virtual ~ICIMQualifier();
  virtual const std::string &GetName(const TCIMOptions &options = TCIMOptions()) = 0;
  /// Empty for the null qualifier that GetQualifier gives for a name the
  /// object does not carry.
  virtual boost::shared_ptr<ICIMQualifierDecl>
  GetDeclaration(const TCIMOptions &options = TCIMOptions()) = 0;
  virtual std::uint32_t GetFlavor(const TCIMOptions &options = TCIMOptions()) = 0;
  virtual void SetFlavor(std::uint32_t flavor, const TCIMOptions &options = TCIMOptions()) = 0;
  virtual TCIMType GetType(const TCIMOptions &options = TCIMOptions()) = 0;
  /// True when the object got it from the element it inherits from.
  virtual bool IsPropagated(const TCIMOptions &options = TCIMOptions()) = 0;
  virtual void SetValue(const TCIMValue &value, const TCIMOptions &options = TCIMOptions()) = 0;
  /// "Name(value)", or "Name" for a true boolean.
  virtual std::string ToMOF(const TCIMOptions &options = TCIMOptions()) = 0;
  virtual TCIMValue GetValue(const TCIMOptions &options = TCIMOptions()) = 0;
};

/// What classes, property declarations, methods and parameters share: they
/// carry qualifiers.
class ORVCORE_API ICIMQualifiedObject {
public:
  virtual ~ICIMQualifiedObject();
  /// Attaches a qualifier made by CreateQualifier; one of the same name
  /// already attached is replaced.
  virtual void AddQualifier(boost::shared_ptr<ICIMQualifier> qualifier,
                            const TCIMOptions &options = TCIMOptions()) = 0;
  /// Makes (does not attach) a qualifier of the declaration with the value
  /// and flavor. An untyped null value becomes a null of the declared type.
  /// An empty declaration throws kORVStatusNullObject; a value of another
  /// type than the declared one throws kORVStatusTypeMismatch. Scope is not
  /// checked: schemas that other tools accept must load.
  virtual boost::shared_ptr<ICIMQualifier>
  CreateQualifier(boost::shared_ptr<ICIMQualifierDecl> declaration, const TCIMValue &value,
                  std::uint32_t flavor, const TCIMOptions &options = TCIMOptions()) = 0;
  /// Own qualifiers in the order attached, then (after Commit of the owning
  /// class) those propagated from the overridden element.
  virtual std::vector<boost::shared_ptr<ICIMQualifier>>
  GetQualifiers(const TCIMOptions &options = TCIMOptions()) = 0;
  virtual bool HasQualifier(const std::string &name,
                            const TCIMOptions &options = TCIMOptions()) = 0;
  /// Never empty: a name the object does not carry gives a qualifier of
  /// that name whose value is null.
  virtual boost::shared_ptr<ICIMQualifier>
  GetQualifier(const std::string &name, const TCIMOptions &options = TCIMOptions()) = 0;
};

/// A property declared by a class. An inherited property that the class does
/// not override is the superclass's own declaration object.
class ORVCORE_API ICIMPropertyDecl : public ICIMQualifiedObject {
public:
  ~ICIMPropertyDecl() override;
  /// The name of the class that declared this property.
  virtual const std::string &GetClassOrigin(const TCIMOptions &options = TCIMOptions()) = 0;
  /// True when it carries a KEY qualifier whose value is true.
  virtual bool IsKey(const TCIMOptions &options = TCIMOptions()) = 0;
  /// Completes the declaration.
  virtual void Commit(const TCIMOptions &options = TCIMOptions()) = 0;
  virtual bool IsCommitted(const TCIMOptions &options = TCIMOptions()) = 0;
  virtual const std::string &GetName(const TCIMOptions &options = TCIMOptions()) = 0;
  /// For a reference property: the name of the class its default value
  /// points to, "" when none.
  virtual std::string GetReferenceClassName(const TCIMOptions &options = TCIMOptions()) = 0;
  /// The type, carried by the default value (SetValue).
  virtual TCIMType GetType(const TCIMOptions &options = TCIMOptions()) = 0;
  /// The superclass's declaration that this one overrides; empty when it
  /// overrides none.
  virtual boost::shared_ptr<ICIMPropertyDecl>
  GetOverriddenProperty(const TCIMOptions &options = TCIMOptions()) = 0;
  virtual TCIMValue GetValue(const TCIMOptions &options = TCIMOptions()) = 0;
  /// Sets the default value, which also sets the type. An untyped null keeps
  /// the type the declaration has (or inherits) and makes the default null.
  /// The option "ARRAYSIZE" gives an array's fixed size (GetArraySize).
  virtual void SetValue(const TCIMValue &value, const TCIMOptions &options = TCIMOptions()) = 0;
  virtual std::string ToMOF(const TCIMOptions &options = TCIMOptions()) = 0;
  /// Names the class of a reference property whose default points to no
  /// class, as when that class is not loaded: GetReferenceClassName then
  /// gives it. Only before Commit; afterwards it throws
  /// kORVStatusAlreadyCommitted.
  virtual void SetReferenceClassName(const std::string &className,
                                     const TCIMOptions &options = TCIMOptions()) = 0;
  /// The fixed size of an array property; 0 when its size is not fixed.
  /// SetValue takes it from a null array's count, or from the option
  /// "ARRAYSIZE" (an unsigned integer) beside a default with elements.
  virtual unsigned int GetArraySize(const TCIMOptions &options = TCIMOptions()) = 0;
};

/// A property of an instance: its declaration as the instance sees it, and
/// its value.
class ORVCORE_API ICIMProperty {
public:
  virtual ~ICIMProperty();
  virtual TCIMType GetDeclaredType(const TCIMOptions &options = TCIMOptions()) = 0;
  virtual const std::string &GetName(const TCIMOptions &options = TCIMOptions()) = 0;
  virtual TCIMValue GetValue(const TCIMOptions &options = TCIMOptions()) = 0;
  virtual boost::shared_ptr<ICIMPropertyDecl>
  GetPropertyDecl(const TCIMOptions &options = TCIMOptions()) = 0;
  virtual bool IsKey(const TCIMOptions &options = TCIMOptions()) = 0;
};

/// A parameter of a method.
class ORVCORE_API ICIMParameter : public ICIMQualifiedObject {
public:
  ~ICIMParameter() override;
  virtual const std::string &GetName(const TCIMOptions &options = TCIMOptions()) = 0;
  virtual TCIMType GetType(const TCIMOptions &options = TCIMOptions()) = 0;
  virtual void Commit(const TCIMOptions &options = TCIMOptions()) = 0;
  virtual bool IsCommitted(const TCIMOptions &options = TCIMOptions()) = 0;
  /// "[qualifiers] type Name" as it stands in a method's parameter list.
  virtual std::string ToMOF(const TCIMOptions &options = TCIMOptions()) = 0;
  /// The class a reference parameter refers to; "" when none was given.
  virtual const std::string &GetReferenceClassName(const TCIMOptions &options = TCIMOptions()) = 0;
  /// Only before Commit; afterwards it throws kORVStatusAlreadyCommitted.
  /// The class need not be in the namespace: a parameter only names it.
  virtual void SetReferenceClassName(const std::string &className,
                                     const TCIMOptions &options = TCIMOptions()) = 0;
  /// The fixed size of an array parameter; 0 when its size is not fixed.
  virtual unsigned int GetArraySize(const TCIMOptions &options = TCIMOptions()) = 0;
  /// Only before Commit; afterwards it throws kORVStatusAlreadyCommitted.
  virtual void SetArraySize(unsigned int size, const TCIMOptions &options = TCIMOptions()) = 0;
};

/// A method of a class.
class ORVCORE_API ICIMMethod : public ICIMQualifiedObject {
public:
  ~ICIMMethod() override;
  virtual const std::string &GetName(const TCIMOptions &options = TCIMOptions()) = 0;
  virtual TCIMType GetReturnType(const TCIMOptions &options = TCIMOptions()) = 0;
  virtual void Commit(const TCIMOptions &options = TCIMOptions()) = 0;
  virtual bool IsCommitted(const TCIMOptions &options = TCIMOptions()) = 0;
  /// In the order added.
  virtual std::vector<boost::shared_ptr<ICIMParameter>>
  GetParameters(const TCIMOptions &options = TCIMOptions()) = 0;
  /// Throws kORVStatusNoSuchParameter for a name the method does not have.
  virtual boost::shared_ptr<ICIMParameter>
  GetParameter(const std::string &name, const TCIMOptions &options = TCIMOptions()) = 0;
  /// A second parameter of the same name throws kORVStatusAlreadyExists.
  virtual boost::shared_ptr<ICIMParameter>
  AddParameter(const std::string &name, TCIMType type,
               const TCIMOptions &options = TCIMOptions()) = 0;
  virtual const std::string &GetClassOrigin(const TCIMOptions &options = TCIMOptions()) = 0;
  virtual std::string ToMOF(const TCIMOptions &options = TCIMOptions()) = 0;
};

/// The root of the object-model objects that are looked up by path.
class ORVCORE_API ICIMObject {
public:
  virtual ~ICIMObject();
};

/// A class of a namespace. Its qualifiers are reached through its
/// ICIMQualifiedObject part.
class ORVCORE_API ICIMClass : public ICIMObject, public ICIMQualifiedObject {
public:
  ~ICIMClass() override;
  /// Empty once the namespace is gone.
  virtual boost::shared_ptr<ICIMNamespace>
  GetNamespace(const TCIMOptions &options = TCIMOptions()) = 0;
  /// Completes the class: its inherited properties and methods are settled
  /// (overridden ones replaced) and qualifiers of overridden elements with
  /// the to-subclass flavor are propagated. A second Commit throws
  /// kORVStatusAlreadyCommitted.
  virtual void Commit(const TCIMOptions &options = TCIMOptions()) = 0;
  virtual bool IsCommitted(const TCIMOptions &options = TCIMOptions()) = 0;
  /// Empty for a class without superclass.
  virtual boost::shared_ptr<ICIMClass>
  GetSuperClass(const TCIMOptions &options = TCIMOptions()) = 0;
  virtual const std::string &GetName(const TCIMOptions &options = TCIMOptions()) = 0;
  virtual const std::string &GetSuperClassName(const TCIMOptions &options = TCIMOptions()) = 0;
  /// True when it carries (or inherits) a true ASSOCIATION qualifier.
  virtual bool IsAssociation(const TCIMOptions &options = TCIMOptions()) = 0;
  /// True for this class's own name and each of its superclasses' names.
  virtual bool IsSubclassOf(const std::string &className,
                            const TCIMOptions &options = TCIMOptions()) = 0;
  /// The key properties in GetProperties order.
  virtual std::vector<boost::shared_ptr<ICIMPropertyDecl>>
  GetKeyProperties(const TCIMOptions &options = TCIMOptions()) = 0;
  /// The properties this class itself declares (overrides included), in
  /// declaration order.
  virtual std::vector<boost::shared_ptr<ICIMPropertyDecl>>
  GetLocalProperties(const TCIMOptions &options = TCIMOptions()) = 0;
  virtual bool HasProperty(const std::string &name, const TCIMOptions &options = TCIMOptions()) = 0;
  /// Removes a property this class declares; throws kORVStatusNoSuchProperty
  /// for another name, kORVStatusAlreadyCommitted after Commit.
  virtual void RemoveProperty(const std::string &name,
                              const TCIMOptions &options = TCIMOptions()) = 0;
  virtual std::vector<boost::shared_ptr<ICIMMethod>>
  GetLocalMethods(const TCIMOptions &options = TCIMOptions()) = 0;
  virtual bool HasMethod(const std::string &name, const TCIMOptions &options = TCIMOptions()) = 0;
  /// This class's name, then its superclass's, up to the root.
  virtual std::vector<std::string> GetDerivation(const TCIMOptions &options = TCIMOptions()) = 0;
  /// Declares a property with the default value (which carries the type).
  /// A name this class already declares throws kORVStatusAlreadyExists; an
  /// inherited name is overridden. After Commit: kORVStatusAlreadyCommitted.
  virtual boost::shared_ptr<ICIMPropertyDecl>
  AddProperty(const std::string &name, TCIMValue value,
              const TCIMOptions &options = TCIMOptions()) = 0;
  /// Own or inherited; an unknown name throws kORVStatusNoSuchProperty.
  virtual boost::shared_ptr<ICIMPropertyDecl>
  GetProperty(const std::string &name, const TCIMOptions &options = TCIMOptions()) = 0;
  /// Inherited properties first (an overridden one in its inherited place),
  /// then the class's new ones, in declaration order.
  virtual std::vector<boost::shared_ptr<ICIMPropertyDecl>>
  GetProperties(const TCIMOptions &options = TCIMOptions()) = 0;
  /// Own or inherited; an unknown name throws kORVStatusNoSuchMethod.
  virtual boost::shared_ptr<ICIMMethod> GetMethod(const std::string &name,
                                                  const TCIMOptions &options = TCIMOptions()) = 0;
  /// Inherited methods first, then new ones, like GetProperties.
  virtual std::vector<boost::shared_ptr<ICIMMethod>>
  GetMethods(const TCIMOptions &options = TCIMOptions()) = 0;
  /// The committed instances of exactly this class, in commit order.
  virtual std::vector<boost::shared_ptr<ICIMInstance>>
  GetInstances(const TCIMOptions &options = TCIMOptions()) = 0;
  /// A new, uncommitted instance with every property at the class's
  /// default value.
  virtual boost::shared_ptr<ICIMInstance>
  CreateInstance(const TCIMOptions &options = TCIMOptions()) = 0;
  virtual void RemoveMethod(const std::string &name,
                            const TCIMOptions &options = TCIMOptions()) = 0;
  /// A name this class already declares throws kORVStatusAlreadyExists; an
  /// inherited one is overridden.
  virtual boost::shared_ptr<ICIMMethod> AddMethod(const std::string &name, TCIMType returnType,
                                                  const TCIMOptions &options = TCIMOptions()) = 0;
  /// The class as MOF: qualifiers, "class Name : Super {", its own
  /// properties with defaults and its own methods with parameters, "};".
  virtual std::string ToMOF(const TCIMOptions &options = TCIMOptions()) = 0;
};

/// An instance of a class.
class ORVCORE_API ICIMInstance {
public:
  virtual ~ICIMInstance();
  virtual boost::shared_ptr<ICIMClass> GetClass(const TCIMOptions &options = TCIMOptions()) = 0;
  /// Registers the instance in its class's namespace. An instance whose
  /// class has keys and whose path is already registered throws
  /// kORVStatusAlreadyExists; a second Commit kORVStatusAlreadyCommitted.
  virtual void Commit(TCIMOptions options = TCIMOptions()) = 0;
  virtual bool IsCommitted(const TCIMOptions &options = TCIMOptions()) = 0;
  virtual const std::string &GetClassName(const TCIMOptions &options = TCIMOptions()) = 0;
  /// The instance's object path: its namespace, class name and key
  /// property values in the class's property order.
  virtual TCIMReference GetPath(const TCIMOptions &options = TCIMOptions()) = 0;
  virtual boost::shared_ptr<ICIMNamespace>
  GetNamespace(const TCIMOptions &options = TCIMOptions()) = 0;
  /// In the class's property order. With the option "ASSIGNED" true, only
  /// those given a value (null too), as MOF writes them: the others take
  /// their class's default.
  virtual std::vector<boost::shared_ptr<ICIMProperty>>
  GetProperties(const TCIMOptions &options = TCIMOptions()) = 0;
  /// An unknown name throws kORVStatusNoSuchProperty.
  virtual TCIMValue GetPropertyValue(const std::string &name,
                                     const TCIMOptions &options = TCIMOptions()) = 0;
  virtual bool HasProperty(const std::string &name, const TCIMOptions &options = TCIMOptions()) = 0;
  /// "instance of Class {\n    Prop = value;\n};" with every non-null
  /// property.
  virtual std::string ToMOF(const TCIMOptions &options = TCIMOptions()) = 0;
  /// An unknown name throws kORVStatusNoSuchProperty.
  virtual boost::shared_ptr<ICIMProperty>
  GetPropertyDecl(const std::string &name, const TCIMOptions &options = TCIMOptions()) = 0;
  /// An unknown name throws kORVStatusNoSuchProperty; a value whose type
  /// differs from the declared type throws kORVStatusTypeMismatch; an
  /// untyped null is taken as null of the declared type. After Commit a key
  /// property cannot change (kORVStatusAlreadyCommitted).
  virtual void SetPropertyValue(const std::string &name, const TCIMValue &value,
                                const TCIMOptions &options = TCIMOptions()) = 0;
};

/// A CIM namespace: the registry of qualifier declarations, classes and
/// instances. Look-ups by name take constant time.
class ORVCORE_API ICIMNamespace {
public:
  virtual ~ICIMNamespace();
  virtual const std::string &GetName(const TCIMOptions &options = TCIMOptions()) = 0;
  /// In definition order, so a superclass comes before its subclasses.
  virtual std::vector<boost::shared_ptr<ICIMClass>>
  GetClasses(const TCIMOptions &options = TCIMOptions()) = 0;
  /// Throws kORVStatusSchemaLookup for an unknown name and
  /// kORVStatusClassHasInstances while subclasses or instances exist.
  virtual void DeleteClass(const std::string &name, const TCIMOptions &options = TCIMOptions()) = 0;
  /// Registers a new class at once, so that later classes can name it as
  /// their superclass. superClass may be empty. A name already defined
  /// throws kORVStatusAlreadyExists; an empty name kORVStatusInvalidArgument.
  virtual boost::shared_ptr<ICIMClass> CreateClass(const std::string &name,
                                                   boost::shared_ptr<ICIMClass> superClass,
                                                   const TCIMOptions &options = TCIMOptions()) = 0;
  /// The empty name gives an empty pointer; an unknown name throws
  /// kORVStatusSchemaLookup.
  virtual boost::shared_ptr<ICIMClass> GetClass(const std::string &name,
                                                const TCIMOptions &options = TCIMOptions()) = 0;
  /// In declaration order.
  virtual std::vector<boost::shared_ptr<ICIMQualifierDecl>>
  GetQualifierDecls(const TCIMOptions &options = TCIMOptions()) = 0;
  /// Throws kORVStatusQualifierNotDeclared for an unknown name.
  virtual void DeleteQualifierDecl(const std::string &name,
                                   const TCIMOptions &options = TCIMOptions()) = 0;
  /// The default value carries the type (and, for a null array, the array
  /// size as its count). The option "ARRAYSIZE", an unsigned integer, gives
  /// the size of an array declared with a default. A name already declared
  /// throws kORVStatusSchemaLookup.
  virtual boost::shared_ptr<ICIMQualifierDecl>
  CreateQualifierDecl(const std::string &name, const TCIMValue &defaultValue, std::uint32_t scope,
                      std::uint32_t flavor, const TCIMOptions &options = TCIMOptions()) = 0;
  /// Throws kORVStatusQualifierNotDeclared for an unknown name.
  virtual boost::shared_ptr<ICIMQualifierDecl>
  GetQualifierDecl(const std::string &name, const TCIMOptions &options = TCIMOptions()) = 0;
  virtual bool HasClass(const std::string &name, const TCIMOptions &options = TCIMOptions()) = 0;
  /// Committed instances of the class (all classes for ""), in commit order;
  /// with deep, also those of its subclasses.
  virtual std::vector<boost::shared_ptr<ICIMInstance>>
  GetInstances(const std::string &className, bool deep,
               const TCIMOptions &options = TCIMOptions()) = 0;
  /// Throws kORVStatusNoSuchInstance for a path no committed instance has.
  virtual boost::shared_ptr<ICIMInstance>
  GetInstance(const TCIMReference &path, const TCIMOptions &options = TCIMOptions()) = 0;
  virtual void DeleteInstance(const TCIMReference &path,
                              const TCIMOptions &options = TCIMOptions()) = 0;
  /// Names of the direct subclasses, or with deep of all descendants, in
  /// definition order.
  virtual std::vector<std::string> GetSubclassNames(const std::string &className, bool deep,
                                                    const TCIMOptions &options = TCIMOptions()) = 0;
  /// Everything as one MOF text: qualifier declarations, classes
  /// (superclasses first), instances.
  virtual std::string ToMOF(const TCIMOptions &options = TCIMOptions()) = 0;
};

/// A new, empty in-memory namespace.
ORVCORE_API boost::shared_ptr<ICIMNamespace> CreateCIMNamespace(const std::string &name);

/// A new, uncommitted instance of a class that the namespace need not
/// define: its properties are the ones set on it, in the order first set,
/// each declared with the type of the first value given (an untyped null
/// declares no type). ns (may be empty) is the namespace its path names.
/// It has no class, so Commit throws kORVStatusNotSupported; an empty class
/// name throws kORVStatusInvalidArgument.
ORVCORE_API boost::shared_ptr<ICIMInstance>
CreateStandaloneInstance(const std::string &className, boost::shared_ptr<ICIMNamespace> ns);

} // namespace NVRNORV20

#endif
