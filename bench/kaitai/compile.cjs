// usage: node compile.cjs DESCRIPTION.ksy: writes its C++ reader into the working folder.
const fs = require('fs');
const path = require('path');
const here = process.cwd();
const compiler = require(path.join(here, 'node_modules/kaitai-struct-compiler'));
const yaml = require(path.join(here, 'node_modules/js-yaml'));

const description = yaml.load(fs.readFileSync(process.argv[2], 'utf8'));
compiler.compile('cpp_stl', description, null, false).then((files) => {
    for (const [name, text] of Object.entries(files))
        fs.writeFileSync(path.join(here, name), text);
}, (error) => {
    console.error(String(error));
    process.exit(1);
});
