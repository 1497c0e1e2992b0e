// Reads structural VHDL into entities: the skeleton of entities and architectures, and what a
// netlist or a BSDL file (IEEE 1149.1, a VHDL entity) needs. Everything else is passed over token
// by token.
//
// A parse never throws to its caller. The first error ends it; what was built before stays. Errors
// outside architectures go to the host's message panel and, as a place to show, to its text editor;
// errors in architectures are silent. ErrorLine tells of both.
//
// Objects are limited to MaximumObjects in one text, entities and components counting for eight;
// more end the parse with the error "Too Many Objects".
#pragma once

#include "bsdl/ParserLog.h"
#include "bsdl/StringsParser.h"
#include "bsdl/VHDLObjects.h"
#include "vorel/Host.h"

#include <stdexcept>

namespace vorel {

class TVHDLParser;

// Ends a parse. The text is empty for an error in an architecture.
class EVHDLParserError : public std::runtime_error {
public:
    EVHDLParserError(const TVHDLParser& parser, const std::string& text)
        : std::runtime_error(text), Source(&parser) {}
    const TVHDLParser& Parser() const noexcept { return *Source; }

private:
    const TVHDLParser* Source;
};

class TVHDLParser : public TStringsParser {
public:
    static constexpr std::int32_t MaximumObjects = 1 << 20;

    // `entities` is filled and stays the caller's. `temporaryFolder` takes the log file; an empty
    // one means no log file. `fileName` (UTF-8) is for reports only.
    TVHDLParser(IHostClient& host, std::string temporaryFolder, TEntityList& entities,
                std::string fileName);

    virtual std::string GetLogFileName() const;
    // Reads `text`, the bytes of a file. Sets ErrorLine and ErrorColumn.
    virtual void Parse(const std::string& text);
    // One line for the log file, cut to 255 characters; nothing once the parse is over.
    virtual void Log(std::string_view line);
    virtual std::unique_ptr<TEntity> CreateEntity();

    // Place of the first error, counted from 1; -1 when there was none.
    std::int32_t ErrorLine = -1;
    std::int32_t ErrorColumn = -1;

protected:
    void ScanDash() override;

    const std::string FileName;

private:
    // Lists of associations of one kind share their reading.
    struct TAssociationPlace {
        TComponentInstance& Instance;
        TVHDLElementKind Kind;
        std::size_t Position; // in the list, from 0
    };

    void ParseUnits();
    void TellEditor();
    [[noreturn]] void Raise(const std::string& message);
    void ShowStatus(std::string_view what, std::string_view name);
    template<class Object>
    std::unique_ptr<Object> Make(std::int32_t weight = 1);
    void ClaimObjects(std::int32_t weight);

    void Expect(std::int32_t token);
    bool TakeIf(std::int32_t token);
    std::string_view ReadIdentifier();
    std::string_view ReadValue();
    std::string ReadUntil(std::int32_t a, std::int32_t b);
    std::string ReadUntil3(std::int32_t a, std::int32_t b, std::int32_t c);
    void EndClause(std::int32_t unit);

    void ScanComment();
    void SkipPragma(std::int32_t word, std::int32_t off, std::int32_t on);

    void EntityRule();
    void EntityBody(TEntity& entity);
    void GenericClause(TEntity& entity);
    void PortClause(TEntity& entity);
    template<class Element>
    std::vector<std::unique_ptr<Element>> InterfaceDeclaration();
    std::shared_ptr<const TDeclaredType> ReadDeclaredType();
    std::int32_t ReadMode();
    TVHDLRange ReadParenthesisedRange();
    void ReadRangeClause(TVHDLRange& range);
    void SignalDeclaration(TEntity& entity);
    std::unique_ptr<TVHDLAttribute> AttributeRule();
    void ReadEntityNames(TVHDLAttribute& attribute);
    std::int32_t ReadEntityClass();
    std::unique_ptr<TVHDLConstant> ConstantRule();

    void ArchitectureRule();
    void ArchitectureBody(TEntity& entity);
    void ComponentRule(TEntity& owner);
    void ComponentBody(TEntity& component);
    void StatementPart(TEntity& owner);
    void Statement(TEntity& owner);
    void Assignment(TEntity& owner, std::string_view target);
    void SkipProcess();
    void SkipBlock();
    void SignalAssignment(TEntity& owner, const TVHDLSignal& signal);
    void PortAssignment(TEntity& owner, const TVHDLPort& port);
    void InstanceRule(TEntity& owner, std::string label, std::string_view component);
    void AssociationList(TComponentInstance& instance, TVHDLElementKind kind);
    void Association(const TAssociationPlace& place);
    TAssociationElement& AddAssociation(const TAssociationPlace& place, const std::string& formal);
    void ResolveFormal(TAssociationElement& element, const TAssociationPlace& place);
    void ResolveActual(TAssociationElement& element, TEntity& owner);

    IHostClient& Host;
    const std::string TemporaryFolder;
    TEntityList& Entities;
    TParserLog LogFile;
    std::int32_t PragmaToken = VHDLToken::None; // the pragma under way
    std::int32_t Objects = 0;                   // claimed so far
    bool InArchitecture = false;
};

template<class Object>
std::unique_ptr<Object> TVHDLParser::Make(std::int32_t weight) {
    ClaimObjects(weight);
    auto object = std::make_unique<Object>();
    object->Line = State.Line + 1;
    object->Column = static_cast<std::int32_t>(State.TokenStart - State.LineStart) + 1;
    return object;
}

} // namespace vorel
