// Packages of the host object system and the process-wide package manager that creates,
// finds and removes them.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace corbel {

class XoClass;

// A named package holding classes in the order added. The package does not own its classes
// (they are the module's singletons); it registers each one as a class type named
// "package.Class" and retires that type when the class leaves.
class XoPackage {
 public:
  XoPackage(const XoPackage&) = delete;
  XoPackage& operator=(const XoPackage&) = delete;

  const std::string& getName() const { return name_; }
  // The flag given at creation; kept and reported, it changes no behaviour here.
  bool getFlag() const { return flag_; }

  // Adds a class; a class already in a package, or a second class of the same name, raises
  // Msg::XoDuplicateClass.
  void addClass(XoClass* cls);
  const std::vector<XoClass*>& getClasses() const { return classes_; }
  XoClass* findClass(std::string_view name) const;

 private:
  friend class XoPackageManager;
  friend class XoClass;

  XoPackage(std::string name, bool flag) : name_(std::move(name)), flag_(flag) {}
  // Detaches every class and retires its type.
  ~XoPackage();
  void forgetClass(XoClass* cls);

  std::string name_;
  bool flag_;
  std::vector<XoClass*> classes_;
};

class XoPackageManager {
 public:
  static XoPackageManager& instance();

  // A new package; a name already in use raises Msg::XoPackageExists.
  XoPackage* createPackage(std::string_view name, bool flag);
  // Destroys the package (its classes stay alive, outside any package). Null or a package not
  // held here is ignored.
  void removePackage(XoPackage* package);
  XoPackage* findPackage(std::string_view name) const;
  // A class by "package.Class", or by bare class name searched in every package in order.
  XoClass* findClass(std::string_view name) const;
  // The packages in creation order.
  std::vector<XoPackage*> getPackages() const;

 private:
  XoPackageManager() = default;
  struct Deleter {
    void operator()(XoPackage* p) const { delete p; }
  };
  std::vector<std::unique_ptr<XoPackage, Deleter>> packages_;
};

}  // namespace corbel
