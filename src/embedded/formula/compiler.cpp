#include "embedded/formula/compiler.h"

#include "embedded/formula/formula.h"
#include "notes/literals.h"

namespace lens::formula {

void Compiler::findVariables() {
  const auto variable = [this](const QString& name) { program_.variables[std::size_t(nameOf(name))] = true; };
  for (const Node& node : tree_.nodes) {
    if (node.kind == Node::Kind::Name) nameOf(node.name);
    if (node.kind == Node::Kind::Assignment) {
      nameOf(node.name);
      if (node.modifier == Node::Modifier::None || node.modifier == Node::Modifier::Default)
        variable(node.name);
    }
    if (node.kind != Node::Kind::Call) continue;
    switch (node.function->form) {
      case Form::Transform:
        variable(this->node(node.children[1]).constant.text().toString());
        break;
      case Form::Sort:
        if (node.children.size() < 3) break;
        variable(u"$A"_s);
        variable(u"$B"_s);
        break;
      case Form::IfError:
        variable(u"$Error"_s);
        break;
      case Form::Set: {
        const Node& name = this->node(node.children[0]);
        if (name.kind == Node::Kind::Constant && name.constant.isOneText())
          variable(name.constant.text().toString());
        else
          computedNames_ = true;
        break;
      }
      case Form::Eval:
        computedNames_ = true;
        break;
      default:
        break;
    }
  }
  if (computedNames_) program_.variables.assign(program_.names.size(), true);
}

bool Compiler::hasEffects(int index) {
  Effects& effects = effects_[std::size_t(index)];
  if (effects != Effects::Unknown) return effects == Effects::Some;
  const Node& node = this->node(index);
  bool some = node.kind == Node::Kind::Assignment;
  if (node.kind == Node::Kind::Call)
    some = node.function->form == Form::Set || node.function->form == Form::Eval ||
           node.function->form == Form::Transform || node.function->form == Form::Sort ||
           node.function->form == Form::IfError || (node.function->traits & trait::Writes);
  for (std::size_t i = 0; i < node.children.size() && !some; ++i) some = hasEffects(node.children[i]);
  effects = some ? Effects::Some : Effects::None;
  return some;
}

int Compiler::nameOf(const QString& written) {
  const Name name(written);
  const auto known = program_.nameIndex.constFind(name);
  if (known != program_.nameIndex.constEnd()) return *known;
  const int index = int(program_.names.size());
  program_.names.push_back(name);
  program_.variables.push_back(computedNames_);
  program_.nameIndex.insert(name, index);
  known_.push_back(false);
  return index;
}

int Compiler::constant(Value value) {
  for (std::size_t i = program_.constants.size(); i-- > 0 && program_.constants.size() - i <= 8;)
    if (program_.constants[i].identical(value)) return int(i);
  program_.constants.push_back(std::move(value));
  return int(program_.constants.size()) - 1;
}

// --- Statements --------------------------------------------------------------------------------------------

void Compiler::statement(const Statement& statement) {
  if (statement.kind == Statement::Kind::Remark) return;
  const int depth = depth_;
  if (statement.kind == Statement::Kind::Expression && node(statement.root).kind == Node::Kind::Assignment) {
    discard(statement.root);
  } else {
    into(statement.root, result_);
    if (statement.kind == Statement::Kind::Select) emit({Op::Select, 0, result_});
  }
  depth_ = depth;
}

bool Compiler::compile(Program& program) {
  findVariables();
  result_ = temporary();
  for (const Statement& one : tree_.statements) {
    statement(one);
    program_.hasSelect = program_.hasSelect || one.kind == Statement::Kind::Select;
  }
  emit({Op::End, 0, result_});
  for (const Node& node : tree_.nodes) {
    if (node.kind != Node::Kind::Call) continue;
    if (qstricmp(node.function->name, "@AllDescendants") == 0)
      program_.responses = Formula::Responses::Descendants;
    else if (qstricmp(node.function->name, "@AllChildren") == 0 &&
             program_.responses == Formula::Responses::None)
      program_.responses = Formula::Responses::Children;
  }
  return finish(program);
}

bool Compiler::finish(Program& program) {
  const int constants = int(program_.constants.size()), names = int(program_.names.size());
  program_.registers = constants + names + deepest_;
  if (program_.registers > 0xFFFF || arguments_.size() > 0xFFFFFF) return false;
  const auto final = [&](int draft) {
    if (draft >= kTemporaries) return quint16(draft - kTemporaries + constants + names);
    return quint16(draft >= kNames ? draft - kNames + constants : draft);
  };
  program_.code.reserve(code_.size());
  for (const Draft& draft : code_) {
    // The count of a call's arguments stands where others have an operand.
    const quint16 b = draft.op == Op::Call ? quint16(draft.b) : final(draft.b);
    program_.code.push_back({draft.op, final(draft.result), final(draft.a), b, draft.x, draft.y});
  }
  for (const int argument : arguments_) program_.arguments.push_back(final(argument));
  program = std::move(program_);
  return true;
}

Compiled compile(QStringView source, const CompileOptions& options) {
  Compiled result;
  if (source.size() > kMaxBytes) {
    result.error.reason = fault::CodeTooLong;
    return result;
  }
  static const thread_local MachineEnvironment machine;
  Parsed parsed = parse(source, options.environment ? *options.environment : machine);
  if (parsed.error.reason != 0) {
    result.error = parsed.error;
    return result;
  }
  auto program = std::make_shared<Program>();
  if (!Compiler(parsed.tree).compile(*program)) {
    result.error.reason = fault::CodeTooLong;
    return result;
  }
  result.formula = std::make_shared<Formula>(std::move(program));
  return result;
}

const std::vector<Name>& Formula::itemNames() const {
  return program_->names;
}

bool Formula::hasSelect() const {
  return program_->hasSelect;
}

Formula::Responses Formula::responses() const {
  return program_->responses;
}

}  // namespace lens::formula
