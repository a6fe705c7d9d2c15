import js from '@eslint/js';

const browser = [
  ...[
    'addEventListener',
    'clearTimeout',
    'document',
    'getComputedStyle',
    'matchMedia',
    'setTimeout',
  ],
  'Chart',
];

export default [
  js.configs.recommended,
  {
    files: ['page.js'],
    languageOptions: {
      sourceType: 'script',
      globals: Object.fromEntries(browser.map((name) => [name, 'readonly'])),
    },
    rules: {
      eqeqeq: 'error',
      'no-shadow': 'error',
      'no-var': 'error',
      'prefer-const': 'error',
      // Texts of modules and labels must never be parsed as HTML.
      'no-restricted-properties': [
        'error',
        ...['innerHTML', 'outerHTML', 'insertAdjacentHTML', 'write', 'writeln'].map((property) => ({
          property,
        })),
      ],
    },
  },
];
